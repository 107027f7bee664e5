#pragma once

#include "platform/ui/UIView.h"

namespace orvalo {

/// A push button of the layout, which sets its title, icon and actions. Main thread.
class UIButton : public UIView {
  public:
    /// Over a GtkButton.
    explicit UIButton(GtkWidget* widget) : UIView(widget) {}
};

}  // namespace orvalo
