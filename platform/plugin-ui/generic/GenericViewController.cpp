#include "platform/plugin-ui/generic/GenericViewController.h"

#include <adwaita.h>

#include <cmath>
#include <map>
#include <utility>

#include "platform/audio/unit/ExpectedRendering.h"
#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

namespace {

constexpr unsigned kPeriod = 40;  // Milliseconds between two looks at the values.
constexpr int kMargin = 18;       // In points.
constexpr int kWidth = 720;

void setMargins(GtkWidget* widget) {
    gtk_widget_set_margin_start(widget, kMargin);
    gtk_widget_set_margin_end(widget, kMargin);
    gtk_widget_set_margin_top(widget, kMargin);
    gtk_widget_set_margin_bottom(widget, kMargin);
}

GtkWidget* newText(const std::string& text) {
    auto* label = gtk_label_new(text.c_str());
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_xalign(GTK_LABEL(label), 0.0F);
    return label;
}

GtkWidget* newScroller(GtkWidget* page) {
    auto* scroller = gtk_scrolled_window_new();
    auto* clamp = adw_clamp_new();
    adw_clamp_set_maximum_size(ADW_CLAMP(clamp), kWidth);
    adw_clamp_set_child(ADW_CLAMP(clamp), page);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), clamp);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER,
                                   GTK_POLICY_AUTOMATIC);
    gtk_widget_set_focusable(scroller, FALSE);
    gtk_widget_add_css_class(scroller, "background");
    return scroller;
}

}  // namespace

std::shared_ptr<GenericViewController> GenericViewController::make(
    const std::shared_ptr<LV2AudioUnit>& unit, const std::string& notice) {
    auto result = std::make_shared<GenericViewController>(unit, notice);
    result->setView(result->scroller_);
    return result;
}

GenericViewController::GenericViewController(std::shared_ptr<LV2AudioUnit> unit,
                                             const std::string& notice)
    : UIViewController(std::nullopt, nullptr),
      unit_(std::move(unit)),
      controls_(UnitControls::of(unit_)),
      page_(gtk_box_new(GTK_ORIENTATION_VERTICAL, kMargin)),
      scroller_(std::make_shared<UIView>(newScroller(page_))) {
    setMargins(page_);
    const auto presentation =
        PluginPresentation::read(unit_->world(), unit_->data(), ExpectedRendering{}.sampleRate);
    setTitle(presentation.title);
    auto* heading = newText(presentation.title);
    gtk_widget_add_css_class(heading, "title-2");
    gtk_box_append(GTK_BOX(page_), heading);
    if (!notice.empty()) {
        gtk_box_append(GTK_BOX(page_), newText(notice));
    }
    addStatus();
    addPresets();
    addPorts(presentation);
    g_signal_connect_swapped(scroller_->widget(), "map",
                             G_CALLBACK(+[](GenericViewController* self) { self->setShown(true); }),
                             this);
    g_signal_connect_swapped(
        scroller_->widget(), "unmap",
        G_CALLBACK(+[](GenericViewController* self) { self->setShown(false); }), this);
    controls_->onCondition = [this] { refresh(); };
    refresh();
}

GenericViewController::~GenericViewController() {
    setShown(false);
    controls_->onCondition = nullptr;
    g_signal_handlers_disconnect_by_data(scroller_->widget(), this);
    g_signal_handlers_disconnect_by_data(retry_, this);
    if (presets_ != nullptr) {
        g_signal_handlers_disconnect_by_data(presets_, this);
    }
}

void GenericViewController::addStatus() {
    status_ = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kMargin);
    statusText_ = newText("");
    gtk_widget_set_hexpand(statusText_, TRUE);
    gtk_box_append(GTK_BOX(status_), statusText_);
    retry_ = gtk_button_new_with_label("Try Again");
    gtk_widget_set_valign(retry_, GTK_ALIGN_CENTER);
    g_signal_connect_swapped(
        retry_, "clicked",
        G_CALLBACK(+[](GenericViewController* self) { self->controls_->retry(); }), this);
    gtk_box_append(GTK_BOX(status_), retry_);
    gtk_box_append(GTK_BOX(page_), status_);
}

void GenericViewController::addPresets() {
    const auto presets = unit_->factoryPresets();
    if (presets.empty()) {
        return;
    }
    // Stands for no preset: GTK 4.18 always selects an entry, which could not be chosen then.
    auto* names = gtk_string_list_new(nullptr);
    gtk_string_list_append(names, "Choose…");
    for (const auto& preset : presets) {
        gtk_string_list_append(names, preset->name.c_str());
    }
    presets_ = gtk_drop_down_new(G_LIST_MODEL(names), nullptr);
    gtk_widget_set_valign(presets_, GTK_ALIGN_CENTER);
    gtk_accessible_update_property(GTK_ACCESSIBLE(presets_), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   "Preset", -1);
    g_signal_connect_swapped(
        presets_, "notify::selected", G_CALLBACK(+[](GenericViewController* self) {
            const auto all = self->unit_->factoryPresets();
            const auto chosen = gtk_drop_down_get_selected(GTK_DROP_DOWN(self->presets_));
            if (chosen > 0 && chosen <= all.size()) {
                // Waits for the effect.
                DispatchQueue::global()->async([unit = self->unit_, preset = all[chosen - 1]] {
                    unit->setCurrentPreset(preset);
                });
            }
        }),
        this);
    auto* row = adw_action_row_new();
    adw_preferences_row_set_title(ADW_PREFERENCES_ROW(row), "Preset");
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), FALSE);
    gtk_widget_set_focusable(row, FALSE);
    adw_action_row_add_suffix(ADW_ACTION_ROW(row), presets_);
    adw_preferences_group_add(ADW_PREFERENCES_GROUP(addGroup("")), row);
}

void GenericViewController::addPorts(const PluginPresentation& presentation) {
    // Groups in the order of their first ports, inputs before outputs.
    for (const bool isInput : {true, false}) {
        std::map<std::string, GtkWidget*> groups;
        for (const auto& port : presentation.ports) {
            if (port.isInput != isInput) {
                continue;
            }
            auto& group = groups[port.group];
            if (group == nullptr) {
                group = addGroup(!port.group.empty() ? port.group : isInput ? "" : "Meters");
            }
            rows_.push_back(std::make_unique<PortRow>(
                port,
                [this, index = port.index](float value) { controls_->setValue(index, value); }));
            adw_preferences_group_add(ADW_PREFERENCES_GROUP(group), rows_.back()->widget());
        }
    }
    if (rows_.empty()) {
        gtk_box_append(GTK_BOX(page_), newText("This effect has no controls."));
    }
}

GtkWidget* GenericViewController::addGroup(const std::string& title) {
    auto* group = adw_preferences_group_new();
    const GText escaped(g_markup_escape_text(title.c_str(), -1));
    adw_preferences_group_set_title(ADW_PREFERENCES_GROUP(group), escaped.get());
    gtk_box_append(GTK_BOX(page_), group);
    return group;
}

void GenericViewController::setShown(bool isShown) {
    timer_ = nullptr;
    if (isShown) {
        refresh();
        timer_.reset(g_timeout_source_new(kPeriod));
        g_source_set_callback(
            timer_.get(),
            [](void* self) -> gboolean {
                static_cast<GenericViewController*>(self)->refresh();
                return G_SOURCE_CONTINUE;
            },
            this, nullptr);
        g_source_attach(timer_.get(), nullptr);
    }
}

void GenericViewController::refresh() {
    const auto condition = controls_->condition();
    const bool isReady = condition == UnitControls::Condition::ready;
    const bool isGivenUp = condition == UnitControls::Condition::givenUp;
    gtk_widget_set_visible(status_, isReady ? FALSE : TRUE);
    gtk_widget_set_visible(retry_, isGivenUp ? TRUE : FALSE);
    if (!isReady) {
        gtk_label_set_text(GTK_LABEL(statusText_),
                           isGivenUp ? "The effect has died too often, and playback goes on dry."
                                     : "The effect has stopped. It is started again.");
        return;
    }
    for (const auto& row : rows_) {
        if (const float value = controls_->value(row->port().index); !std::isnan(value)) {
            row->show(value);
        }
    }
}

}  // namespace orvalo
