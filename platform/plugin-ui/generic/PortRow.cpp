#include "platform/plugin-ui/generic/PortRow.h"

#include <adwaita.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

constexpr int kControlWidth = 220;       // In points.
constexpr int kLeastControlWidth = 120;  // Beside a name that needs the room.
constexpr int kTextWidth = 11;           // In characters.
// A value that the user has set reaches the plug-in and returns within this time.
constexpr gint64 kSettling = 300 * G_TIME_SPAN_MILLISECOND;

void setName(GtkWidget* control, const PortPresentation& port) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(control), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   port.name.c_str(), -1);
}

/// The value with its unit. Not every version of the toolkit passes the text of a value on.
void setText(GtkWidget* scale, const std::string& text) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(scale), GTK_ACCESSIBLE_PROPERTY_VALUE_TEXT,
                                   text.c_str(), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, text.c_str(),
                                   -1);
}

const PortPresentation::Choice& nearestChoice(const PortPresentation& port, float value) {
    return *std::ranges::min_element(
        port.choices, {}, [value](const auto& choice) { return std::abs(choice.value - value); });
}

/// The wheel scrolls the page; over a control it would change a value by accident.
void leaveWheelToPage(GtkWidget* control) {
    const GObjectPointer<GListModel> controllers(gtk_widget_observe_controllers(control));
    for (guint index = g_list_model_get_n_items(controllers.get()); index > 0; --index) {
        const GObjectPointer<GtkEventController> controller(
            GTK_EVENT_CONTROLLER(g_list_model_get_item(controllers.get(), index - 1)));
        if (GTK_IS_EVENT_CONTROLLER_SCROLL(controller.get())) {
            gtk_event_controller_set_propagation_phase(controller.get(), GTK_PHASE_NONE);
        }
    }
}

void measureControl(GtkWidget* bin, GtkOrientation orientation, int forSize, int* minimum,
                    int* natural, int* /*minimumBaseline*/, int* /*naturalBaseline*/) {
    gtk_widget_measure(gtk_widget_get_first_child(bin), orientation, forSize, minimum, natural,
                       nullptr, nullptr);
    if (orientation == GTK_ORIENTATION_HORIZONTAL) {
        *minimum = std::max(*minimum, kLeastControlWidth);
        *natural = std::max(*minimum, kControlWidth);
    }
}

void allocateControl(GtkWidget* bin, int width, int height, int baseline) {
    gtk_widget_allocate(gtk_widget_get_first_child(bin), width, height, baseline, nullptr);
}

/// Wraps the control in a widget that prefers kControlWidth and shrinks to kLeastControlWidth.
/// gtk_widget_set_size_request() sets the least width only.
GtkWidget* newControlBin(GtkWidget* control) {
    auto* bin = adw_bin_new();
    gtk_widget_set_layout_manager(bin,
                                  gtk_custom_layout_new(nullptr, measureControl, allocateControl));
    adw_bin_set_child(ADW_BIN(bin), control);
    return bin;
}

}  // namespace

PortRow::PortRow(PortPresentation port, std::function<void(float)> set, Form form)
    : port_(std::move(port)),
      set_(std::move(set)),
      form_(form),
      shown_(std::numeric_limits<float>::quiet_NaN()) {
    control_ = makeControl();
    setName(control_, port_);
    if (form_ == Form::row) {
        makeRow();
    }
    showNow(port_.defaultValue);
}

GtkWidget* PortRow::makeControl() {
    using enum PortPresentation::Kind;
    if (!port_.isInput) {
        return makeMeter();
    }
    switch (port_.kind) {
        case toggle:
            return makeSwitch();
        case trigger:
            return makeTrigger();
        case choice:
            return form_ == Form::row ? makeChoice() : makeScale();
        case number:
        case integer:
            break;
    }
    return makeScale();
}

void PortRow::makeRow() {
    row_ = adw_action_row_new();
    auto* row = ADW_PREFERENCES_ROW(row_);
    // Names are no markup.
    adw_preferences_row_set_use_markup(row, FALSE);
    adw_preferences_row_set_title(row, port_.name.c_str());
    // A name of two lines would be broken within words although the control could be narrower.
    adw_action_row_set_title_lines(ADW_ACTION_ROW(row_), 1);
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row_), FALSE);
    // The control inside takes the keyboard.
    gtk_widget_set_focusable(row_, FALSE);
    gtk_widget_set_tooltip_text(
        row_, (port_.name + (port_.comment.empty() ? "" : "\n" + port_.comment)).c_str());
    gtk_widget_set_valign(control_, GTK_ALIGN_CENTER);
    const bool hasText = GTK_IS_SCALE(control_) || GTK_IS_LEVEL_BAR(control_);
    adw_action_row_add_suffix(ADW_ACTION_ROW(row_), hasText ? newControlBin(control_) : control_);
    if (hasText) {
        text_ = gtk_label_new(nullptr);
        gtk_label_set_width_chars(GTK_LABEL(text_), kTextWidth);
        gtk_label_set_xalign(GTK_LABEL(text_), 1.0F);
        gtk_widget_add_css_class(text_, "numeric");
        adw_action_row_add_suffix(ADW_ACTION_ROW(row_), text_);
    }
}

PortRow::~PortRow() {
    g_signal_handlers_disconnect_by_data(control_, this);
}

GtkWidget* PortRow::makeScale() {
    // Assistive technology reads and sets the scale's own value.
    const double least = countsPlaces() ? 0.0 : double{port_.minimum};
    const double greatest = countsPlaces() ? 1.0 : double{port_.maximum};
    const bool isWhole = port_.kind != PortPresentation::Kind::number;
    double step = (greatest - least) / 100;
    if (isWhole) {
        step = countsPlaces() ? 1.0 / (double{port_.maximum} - double{port_.minimum}) : 1.0;
    }
    auto* scale = gtk_scale_new(GTK_ORIENTATION_HORIZONTAL,
                                gtk_adjustment_new(least, least, greatest, step, 10 * step, 0.0));
    gtk_scale_set_draw_value(GTK_SCALE(scale), FALSE);
    gtk_range_set_round_digits(GTK_RANGE(scale), -1);
    if (form_ == Form::row) {
        gtk_scale_add_mark(
            GTK_SCALE(scale),
            countsPlaces() ? port_.place(port_.defaultValue) : double{port_.defaultValue},
            GTK_POS_BOTTOM, nullptr);
        leaveWheelToPage(scale);
    }
    g_signal_connect_swapped(
        scale, "value-changed",
        G_CALLBACK(+[](PortRow* self) { self->userSets(self->valueOfScale()); }), this);
    return scale;
}

float PortRow::valueOfScale() const {
    const double position = gtk_range_get_value(GTK_RANGE(control_));
    if (countsPlaces()) {
        return port_.valueAt(position);
    }
    const auto value = static_cast<float>(position);
    if (port_.kind == PortPresentation::Kind::choice) {
        return nearestChoice(port_, value).value;
    }
    return port_.kind == PortPresentation::Kind::integer ? std::round(value) : value;
}

GtkWidget* PortRow::makeSwitch() {
    auto* toggle = gtk_switch_new();
    g_signal_connect_swapped(toggle, "notify::active", G_CALLBACK(+[](PortRow* self) {
                                 const bool isOn =
                                     gtk_switch_get_active(GTK_SWITCH(self->control_)) != FALSE;
                                 self->userSets(isOn ? self->port_.maximum : self->port_.minimum);
                             }),
                             this);
    return toggle;
}

GtkWidget* PortRow::makeChoice() {
    auto* names = gtk_string_list_new(nullptr);
    for (const auto& choice : port_.choices) {
        gtk_string_list_append(names, choice.name.c_str());
    }
    auto* chooser = gtk_drop_down_new(G_LIST_MODEL(names), nullptr);
    g_signal_connect_swapped(chooser, "notify::selected", G_CALLBACK(+[](PortRow* self) {
                                 const auto chosen =
                                     gtk_drop_down_get_selected(GTK_DROP_DOWN(self->control_));
                                 if (chosen < self->port_.choices.size()) {
                                     self->userSets(self->port_.choices[chosen].value);
                                 }
                             }),
                             this);
    return chooser;
}

GtkWidget* PortRow::makeTrigger() {
    auto* button = gtk_button_new_with_label("Trigger");
    g_signal_connect_swapped(button, "clicked", G_CALLBACK(+[](PortRow* self) {
                                 // The plug-in, or the timer below, sets it back.
                                 self->set_(self->port_.maximum);
                             }),
                             this);
    return button;
}

GtkWidget* PortRow::makeMeter() {
    auto* meter = gtk_level_bar_new();
    // Its colours would warn of values that are none of its business.
    for (const auto* offset :
         {GTK_LEVEL_BAR_OFFSET_LOW, GTK_LEVEL_BAR_OFFSET_HIGH, GTK_LEVEL_BAR_OFFSET_FULL}) {
        gtk_level_bar_remove_offset_value(GTK_LEVEL_BAR(meter), offset);
    }
    return meter;
}

void PortRow::userSets(float value) {
    if (isShowing_) {
        return;
    }
    userSetTime_ = g_get_monotonic_time();
    shown_ = value;
    const auto text = port_.text(value);
    if (text_ != nullptr) {
        gtk_label_set_text(GTK_LABEL(text_), text.c_str());
    }
    if (GTK_IS_SCALE(control_)) {
        setText(control_, text);
    }
    set_(value);
}

void PortRow::show(float value) {
    // What the plug-in writes is untrusted.
    const float sound = std::isfinite(value) ? value : port_.defaultValue;
    if (port_.isInput && port_.kind == PortPresentation::Kind::trigger) {
        if (sound != port_.defaultValue) {
            set_(port_.defaultValue);
        }
        return;
    }
    const bool isSettling =
        userSetTime_ != 0 && g_get_monotonic_time() - userSetTime_ < kSettling && sound != shown_;
    if (sound != shown_ && !isSettling) {
        showNow(sound);
    }
}

void PortRow::showNow(float value) {
    shown_ = value;
    isShowing_ = true;
    const auto text = port_.text(value);
    if (GTK_IS_SCALE(control_)) {
        gtk_range_set_value(GTK_RANGE(control_),
                            countsPlaces() ? port_.place(value) : double{value});
        setText(control_, text);
    } else if (GTK_IS_LEVEL_BAR(control_)) {
        gtk_level_bar_set_value(GTK_LEVEL_BAR(control_), port_.place(value));
    } else if (GTK_IS_SWITCH(control_)) {
        gtk_switch_set_active(GTK_SWITCH(control_), value > 0.0F ? TRUE : FALSE);
    } else if (GTK_IS_DROP_DOWN(control_)) {
        const auto chosen = &nearestChoice(port_, value) - port_.choices.data();
        gtk_drop_down_set_selected(GTK_DROP_DOWN(control_), static_cast<guint>(chosen));
    }
    if (text_ != nullptr) {
        gtk_label_set_text(GTK_LABEL(text_), text.c_str());
    }
    isShowing_ = false;
}

}  // namespace orvalo
