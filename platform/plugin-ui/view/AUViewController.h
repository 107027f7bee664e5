#pragma once

#include "platform/ui/UIViewController.h"

namespace orvalo {

/// The UI of an effect as a part of a screen. Main thread.
class AUViewController : public UIViewController {
  public:
    using UIViewController::UIViewController;
};

}  // namespace orvalo
