#include "tests/effect/ui/EmbeddedPluginUI.h"

#include <dlfcn.h>
#include <lv2/atom/atom.h>
#include <lv2/midi/midi.h>
#include <lv2/urid/urid.h>
#include <poll.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <stdexcept>

#include "effect/DetectorEvents.h"
#include "tests/effect/EffectWorld.h"

namespace orvalo::testing {

namespace {

constexpr int limitSeconds = 10;

const LV2UI_Descriptor* load() {
    // Never unloaded, as in many hosts.
    static void* const library = dlopen(EFFECT_BUNDLE "orvalo-ui.so", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error(dlerror());
    }
    const auto find =
        reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(library, "lv2ui_descriptor"));
    EXPECT_EQ(find(1), nullptr);
    return find(0);
}

EmbeddedPluginUI& self(void* handle) {
    return *static_cast<EmbeddedPluginUI*>(handle);
}

void write(LV2UI_Controller controller, std::uint32_t port, std::uint32_t size,
           std::uint32_t protocol, const void* buffer) {
    self(controller).takeWrite(port, size, protocol, buffer);
}

void touch(LV2UI_Feature_Handle handle, std::uint32_t port, bool grabbed) {
    self(handle).touches.push_back((grabbed ? "grab " : "let ") + std::to_string(port));
}

std::uint32_t subscribe(LV2UI_Feature_Handle handle, std::uint32_t port, std::uint32_t protocol,
                        const LV2_Feature* const* /*features*/) {
    self(handle).subscriptions.push_back("+" + self(handle).describe(port, protocol));
    return 0;
}

std::uint32_t unsubscribe(LV2UI_Feature_Handle handle, std::uint32_t port, std::uint32_t protocol,
                          const LV2_Feature* const* /*features*/) {
    self(handle).subscriptions.push_back("-" + self(handle).describe(port, protocol));
    return 0;
}

int resizeHost(LV2UI_Feature_Handle handle, int width, int height) {
    self(handle).sizes.emplace_back(width, height);
    return 0;
}

}  // namespace

void PrintTo(const PortWrite& write, std::ostream* stream) {
    *stream << write.port << ": " << write.value;
}

std::uint32_t EmbeddedPluginUI::portOf(const std::string& symbol) {
    const auto& world = EffectWorld::shared();
    const Node name(lilv_new_string(world.world(), symbol.c_str()));
    const LilvPort* port = lilv_plugin_get_port_by_symbol(world.plugin(), name.get());
    return port == nullptr ? LV2UI_INVALID_PORT_INDEX : lilv_port_get_index(world.plugin(), port);
}

EmbeddedPluginUI::EmbeddedPluginUI(HostWindow& host, const Offer& offer)
    : host_(host),
      offer_(offer),
      portMap_{this,
               [](LV2UI_Feature_Handle handle, const char* symbol) {
                   const auto port = portOf(symbol);
                   return port == LV2UI_INVALID_PORT_INDEX ? port
                                                           : port + self(handle).offer_.shift;
               }},
      touch_{this, touch},
      subscribe_{this, subscribe, unsubscribe},
      resize_{this, resizeHost},
      descriptor_(load()),
      idle_(static_cast<const LV2UI_Idle_Interface*>(
          descriptor_->extension_data(LV2_UI__idleInterface))) {
    const float rate = 60.0F;
    const LV2_URID type = uris_[LV2_ATOM__Float];
    const std::array<LV2_Options_Option, 3> options{
        {{LV2_OPTIONS_INSTANCE, 0, uris_[LV2_UI__scaleFactor], sizeof(float), type, &offer.scale},
         {LV2_OPTIONS_INSTANCE, 0, uris_[LV2_UI__updateRate], sizeof(float), type, &rate},
         {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}}};
    // NOLINTNEXTLINE(performance-no-int-to-ptr): LV2 passes a window ID as a pointer
    auto* const parent = reinterpret_cast<void*>(offer.parent.value_or(0));
    const std::array<LV2_Feature, 7> offered{
        {{LV2_UI__parent, parent},
         {LV2_URID__map, uris_.map()},
         {LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(options.data())},
         {LV2_UI__portMap, &portMap_},
         {LV2_UI__touch, &touch_},
         {LV2_UI__portSubscribe, &subscribe_},
         {LV2_UI__resize, &resize_}}};
    std::vector<const LV2_Feature*> features;
    for (const auto& one : offered) {
        const bool isParent = &one == &offered.front();
        if (isParent ? offer.parent.has_value() : offer.all) {
            features.push_back(&one);
        }
    }
    features.push_back(nullptr);
    LV2UI_Widget widget = nullptr;
    handle_ = descriptor_->instantiate(descriptor_, offer.plugin, EFFECT_BUNDLE, write, this,
                                       &widget, features.data());
    window_ = reinterpret_cast<Window>(widget);
}

void EmbeddedPluginUI::takeWrite(std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
                                 const void* buffer) {
    if (protocol == 0) {
        ASSERT_EQ(size, sizeof(float));
        writes.push_back({port, *static_cast<const float*>(buffer)});
        return;
    }
    ASSERT_EQ(protocol, uris_[LV2_ATOM__eventTransfer]);
    ASSERT_EQ(port, portOf("midi_in") + offer_.shift);
    const auto* atom = static_cast<const LV2_Atom*>(buffer);
    ASSERT_EQ(size, sizeof(LV2_Atom) + atom->size);
    if (atom->type == uris_[LV2_ATOM__Object]) {
        const auto* object = reinterpret_cast<const LV2_Atom_Object_Body*>(atom + 1);
        ASSERT_EQ(atom->size, sizeof *object);
        ASSERT_EQ(object->otype, uris_[effect::watchDetectorUri]);
        ++spectrumRequests;
        return;
    }
    ASSERT_EQ(atom->type, uris_[LV2_MIDI__MidiEvent]);
    ASSERT_EQ(atom->size, 3U);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(atom + 1);
    std::array<char, 12> text{};
    static_cast<void>(
        std::snprintf(text.data(), text.size(), "%02x %02x %02x", bytes[0], bytes[1], bytes[2]));
    messages.emplace_back(text.data());
}

std::string EmbeddedPluginUI::describe(std::uint32_t port, std::uint32_t protocol) {
    const std::string number = std::to_string(port);
    return protocol == 0 ? number : number + " " + uris_.uri(protocol);
}

void EmbeddedPluginUI::sendSpectrum(float level) {
    struct {
        LV2_Atom atom;
        effect::DetectorSpectrum spectrum;
    } event{};
    event.atom = {sizeof event.spectrum, uris_[LV2_ATOM__Object]};
    event.spectrum.object.otype = uris_[effect::detectorSpectrumUri];
    event.spectrum.levels = {.key = uris_[effect::bandLevelsUri],
                             .context = 0,
                             .value = {sizeof(LV2_Atom_Vector_Body) + sizeof event.spectrum.values,
                                       uris_[LV2_ATOM__Vector]}};
    event.spectrum.vector = {sizeof(float), uris_[LV2_ATOM__Float]};
    event.spectrum.values.fill(level);
    sendRaw(portOf("midi_out") + offer_.shift, sizeof event, uris_[LV2_ATOM__eventTransfer],
            &event);
}

void EmbeddedPluginUI::close() {
    if (handle_ != nullptr) {
        descriptor_->cleanup(handle_);
        handle_ = nullptr;
    }
}

void EmbeddedPluginUI::send(const std::string& symbol, float value) {
    sendRaw(portOf(symbol) + offer_.shift, sizeof value, 0, &value);
}

void EmbeddedPluginUI::sendRaw(std::uint32_t port, std::uint32_t size, std::uint32_t format,
                               const void* buffer) {
    descriptor_->port_event(handle_, port, size, format, buffer);
}

int EmbeddedPluginUI::idle() {
    return idle_->idle(handle_);
}

bool EmbeddedPluginUI::idleUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(limitSeconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        idle();
        // The period of a host's timer.
        poll(nullptr, 0, 4);
    }
    return true;
}

void EmbeddedPluginUI::settle() {
    // Two equal pictures, more than a drawing interval apart, after the first one.
    Pixels before;
    int alike = 0;
    EXPECT_TRUE(idleUntil([&] {
        Pixels now = pixels();
        const bool isDrawn = now.at(now.width / 2.0, 2.0) == 0x121518 && now.count(0x5FC9B8) > 0;
        alike = isDrawn && now == before ? alike + 1 : 0;
        before = std::move(now);
        return alike > 12;
    }));
}

int EmbeddedPluginUI::resize(int width, int height) {
    const auto* resizing =
        static_cast<const LV2UI_Resize*>(descriptor_->extension_data(LV2_UI__resize));
    return resizing->ui_resize(handle_, width, height);
}

effect::ui::Layout EmbeddedPluginUI::layout(float scale) const {
    XWindowAttributes attributes{};
    XGetWindowAttributes(host_.display(), window_, &attributes);
    return effect::ui::Layout::of(attributes.width, attributes.height, scale);
}

}  // namespace orvalo::testing
