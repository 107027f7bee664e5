#include "platform/plugin-ui/x11/LV2PluginUI.h"

#include <glib.h>
#include <lv2/atom/atom.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <utility>

#include "platform/audio/lv2/URIDMap.h"
#include "platform/plugin-ui/x11/X11Errors.h"

namespace orvalo {

namespace {

// The protocol of control values.
constexpr std::uint32_t kFloats = 0;

std::uint32_t eventTransfer() {
    static const auto number = URIDMap::shared().map(LV2_ATOM__eventTransfer);
    return number;
}

std::uint32_t floatProtocol() {
    static const auto number = URIDMap::shared().map(LV2_UI__floatProtocol);
    return number;
}

LV2PluginUI& ui(SuilController controller) {
    return *static_cast<LV2PluginUI*>(controller);
}

}  // namespace

LV2PluginUI::Connection::Connection(std::shared_ptr<LV2LocalAudioUnit> ofUnit,
                                    std::shared_ptr<LV2EventLink> byLink)
    : unit(std::move(ofUnit)), link(std::move(byLink)), instance(unit->connectPluginUI(link)) {}

LV2PluginUI::Connection::~Connection() {
    unit->disconnectPluginUI(link);
}

LV2PluginUI::LV2PluginUI(const std::shared_ptr<LV2LocalAudioUnit>& unit,
                         const LV2PluginUIData& data, unsigned long parent, double scaleFactor,
                         std::function<void(X11Size)> onResize, LV2PresetRequests presets)
    : data_(data),
      log_(data.plugin),
      connection_(unit, std::make_shared<LV2EventLink>(unit->data().ports)),
      options_(*unit, data, scaleFactor),
      features_(options_, log_, parent, connection_.instance, std::move(onResize),
                std::move(presets)),
      shown_(unit->data().ports.size()),
      isShown_(unit->data().ports.size()),
      isTouched_(unit->data().ports.size()),
      host_(suil_host_new(write, index, subscribe, unsubscribe)) {
    suil_host_set_touch_func(host_.get(), touch);
    for (const auto port : data_.notifiedPorts) {
        connection_.link->setSubscribed(port, true);
    }
    instance_.reset(suil_instance_new(host_.get(), this, LV2_UI__X11UI, data_.plugin.c_str(),
                                      data_.uri.c_str(), LV2_UI__X11UI, data_.bundle.c_str(),
                                      data_.binary.c_str(), features_.features()));
    // The UI may have replaced the handler.
    X11Errors::installHandler();
    if (instance_ == nullptr) {
        throw pluginUIError(LV2ErrorCode::instantiationFailed, data_.plugin,
                            "it refuses to be made");
    }
    const auto extension = [this](const char* uri) {
        return suil_instance_extension_data(instance_.get(), uri);
    };
    idle_ = static_cast<const LV2UI_Idle_Interface*>(extension(LV2_UI__idleInterface));
    resize_ = static_cast<const LV2UI_Resize*>(extension(LV2_UI__resize));
    sendControls();
}

LV2PluginUI::~LV2PluginUI() {
    instance_.reset();
}

unsigned long LV2PluginUI::window() const {
    return reinterpret_cast<unsigned long>(suil_instance_get_widget(instance_.get()));
}

bool LV2PluginUI::update() {
    sendControls();
    sendEvents();
    return idle_ == nullptr || idle_->idle == nullptr ||
           idle_->idle(suil_instance_get_handle(instance_.get())) == 0;
}

void LV2PluginUI::setSize(X11Size size) {
    if (resize_ != nullptr && resize_->ui_resize != nullptr) {
        // This extension expects the UI's handle, not the host's.
        resize_->ui_resize(suil_instance_get_handle(instance_.get()), size.width, size.height);
    }
}

bool LV2PluginUI::isOutdated() const {
    return data_.accessesInstance &&
           connection_.unit->instanceNumber() != connection_.instance.number;
}

void LV2PluginUI::sendControls() {
    const auto& controls = connection_.unit->controls();
    for (const auto& port : connection_.unit->data().ports) {
        if (port.kind != LV2PortKind::control || isTouched_[port.index]) {
            continue;
        }
        const float value = controls.value(port.index);
        auto& shown = shown_[port.index];
        // Compares the bits, because a NaN is not equal to itself.
        if (isShown_[port.index] &&
            std::bit_cast<std::uint32_t>(value) == std::bit_cast<std::uint32_t>(shown)) {
            continue;
        }
        isShown_[port.index] = true;
        shown = value;
        suil_instance_port_event(instance_.get(), port.index, sizeof(value), kFloats, &value);
    }
}

void LV2PluginUI::sendEvents() {
    std::uint32_t port = 0;
    while (const auto* event = connection_.link->receive(port)) {
        suil_instance_port_event(instance_.get(), port,
                                 static_cast<std::uint32_t>(sizeof(*event)) + event->size,
                                 eventTransfer(), event);
    }
    if (const auto lost = connection_.link->takeLostCount(); lost > 0) {
        g_warning("%u events of <%s> were too many for its UI.", lost, data_.plugin.c_str());
    }
}

const LV2Port* LV2PluginUI::control(std::uint32_t port) const {
    const auto& ports = connection_.unit->data().ports;
    return port < ports.size() && ports[port].kind == LV2PortKind::control ? &ports[port] : nullptr;
}

void LV2PluginUI::write(SuilController controller, std::uint32_t port, std::uint32_t size,
                        std::uint32_t protocol, const void* buffer) {
    auto& self = ui(controller);
    const bool isFloat = protocol == kFloats || protocol == floatProtocol();
    const bool isAccepted =
        isFloat ? self.writeControl(port, size, buffer)
                : protocol == eventTransfer() && self.writeEvent(port, size, buffer);
    if (!isAccepted && !std::exchange(self.hasWarned_, true)) {
        g_warning("The UI of <%s> wrote to port %u what that cannot take.",
                  self.data_.plugin.c_str(), port);
    }
}

bool LV2PluginUI::writeControl(std::uint32_t port, std::uint32_t size, const void* buffer) {
    const auto* written = control(port);
    float value = 0.0F;
    if (written == nullptr || !written->isInput || size != sizeof(value)) {
        return false;
    }
    std::memcpy(&value, buffer, sizeof(value));
    if (!std::isfinite(value)) {
        return false;
    }
    // A value sent back would move the control while the user drags it.
    shown_[port] = value;
    isShown_[port] = true;
    connection_.unit->controls().setValue(port, value);
    return true;
}

bool LV2PluginUI::writeEvent(std::uint32_t port, std::uint32_t size, const void* buffer) {
    LV2_Atom atom{};
    if (size < sizeof(atom)) {
        return false;
    }
    std::memcpy(&atom, buffer, sizeof(atom));
    return atom.size <= size - sizeof(atom) &&
           connection_.link->send(port, atom.type, atom.size,
                                  static_cast<const std::byte*>(buffer) + sizeof(atom));
}

std::uint32_t LV2PluginUI::index(SuilController controller, const char* symbol) {
    for (const auto& port : ui(controller).connection_.unit->data().ports) {
        if (port.symbol == symbol) {
            return port.index;
        }
    }
    return LV2UI_INVALID_PORT_INDEX;
}

std::uint32_t LV2PluginUI::setSubscribed(std::uint32_t port, std::uint32_t protocol,
                                         bool isSubscribed) {
    if (control(port) != nullptr) {
        // The UI gets all controls anyway.
        return protocol == kFloats || protocol == floatProtocol() ? 0 : 1;
    }
    return protocol == eventTransfer() && connection_.link->setSubscribed(port, isSubscribed) ? 0
                                                                                              : 1;
}

std::uint32_t LV2PluginUI::subscribe(SuilController controller, std::uint32_t port,
                                     std::uint32_t protocol,
                                     const LV2_Feature* const* /*features*/) {
    return ui(controller).setSubscribed(port, protocol, true);
}

std::uint32_t LV2PluginUI::unsubscribe(SuilController controller, std::uint32_t port,
                                       std::uint32_t protocol,
                                       const LV2_Feature* const* /*features*/) {
    return ui(controller).setSubscribed(port, protocol, false);
}

void LV2PluginUI::touch(SuilController controller, std::uint32_t port, bool isGrabbed) {
    auto& self = ui(controller);
    if (self.control(port) != nullptr) {
        self.isTouched_[port] = isGrabbed;
    }
}

}  // namespace orvalo
