#pragma once

#include <string>

#include "platform/ui/UIView.h"

namespace orvalo {

/// A text of the layout. Main thread.
class UILabel : public UIView {
  public:
    /// Over a GtkLabel.
    explicit UILabel(GtkWidget* widget) : UIView(widget) {}

    /// Registers this class for the GtkLabels of layouts. Before a layout is loaded.
    static void registerClass();

    std::string text() const;
    void setText(const std::string& text);
};

}  // namespace orvalo
