#include "programs/easing/Motion.h"

#include <giomm/settingsschemasource.h>

namespace orvalo {

namespace {

constexpr auto kSchema = "org.gnome.desktop.interface";
constexpr auto kKey = "enable-animations";

Glib::RefPtr<Gio::Settings> desktopSettings() {
    const auto source = Gio::SettingsSchemaSource::get_default();
    const auto schema = source ? source->lookup(kSchema, true) : nullptr;
    return schema && schema->has_key(kKey) ? Gio::Settings::create(kSchema) : nullptr;
}

}  // namespace

Motion::Motion() : desktop_(desktopSettings()) {
    const auto tell = [this] { signalChanged_.emit(); };
    toolkit_->property_gtk_enable_animations().signal_changed().connect(tell);
    if (desktop_) {
        desktop_->signal_changed(kKey).connect([tell](const auto& /*key*/) { tell(); });
    }
}

bool Motion::isReduced() const {
    return !toolkit_->property_gtk_enable_animations() ||
           (desktop_ && !desktop_->get_boolean(kKey));
}

}  // namespace orvalo
