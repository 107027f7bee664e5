#include "platform/ui/UILabel.h"

#include <gtk/gtk.h>

#include "platform/ui/MainThread.h"

namespace orvalo {

void UILabel::registerClass() {
    UIView::setClass(GTK_TYPE_LABEL,
                     [](GtkWidget* widget) { return std::make_shared<UILabel>(widget); });
}

std::string UILabel::text() const {
    requireMainThread("UILabel.text");
    return gtk_label_get_text(GTK_LABEL(widget()));
}

void UILabel::setText(const std::string& text) {
    requireMainThread("UILabel.text");
    gtk_label_set_text(GTK_LABEL(widget()), text.c_str());
}

}  // namespace orvalo
