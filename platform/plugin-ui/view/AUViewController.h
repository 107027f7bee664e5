#pragma once

#include "platform/ui/UIViewController.h"

namespace orvalo {

/// The view controller of an effect's UI. Main thread.
class AUViewController : public UIViewController {
  public:
    using UIViewController::UIViewController;
};

}  // namespace orvalo
