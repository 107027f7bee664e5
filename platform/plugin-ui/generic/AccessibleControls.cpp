#include "platform/plugin-ui/generic/AccessibleControls.h"

#include <cmath>

namespace orvalo {

AccessibleControls::AccessibleControls(
    const PluginPresentation& presentation,
    const std::function<void(std::uint32_t port, float value)>& set)
    // A box has no role that readers name, and a role can be set only while it is made.
    : widget_(GTK_WIDGET(
          g_object_ref_sink(g_object_new(GTK_TYPE_BOX, "orientation", GTK_ORIENTATION_VERTICAL,
                                         "accessible-role", GTK_ACCESSIBLE_ROLE_GROUP, nullptr)))) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   ("Controls of " + presentation.title).c_str(), -1);
    gtk_widget_set_opacity(widget(), 0.0);
    gtk_widget_set_can_target(widget(), FALSE);
    gtk_widget_set_can_focus(widget(), FALSE);
    gtk_widget_set_halign(widget(), GTK_ALIGN_START);
    gtk_widget_set_valign(widget(), GTK_ALIGN_START);
    for (const auto& port : presentation.ports) {
        if (port.isInput) {
            controls_.push_back(std::make_unique<PortRow>(
                port, [set, index = port.index](float value) { set(index, value); },
                PortRow::Form::control));
            gtk_box_append(GTK_BOX(widget()), controls_.back()->widget());
        }
    }
}

void AccessibleControls::refresh(const std::function<float(std::uint32_t port)>& value) {
    for (const auto& control : controls_) {
        if (const float now = value(control->port().index); !std::isnan(now)) {
            control->show(now);
        }
    }
}

}  // namespace orvalo
