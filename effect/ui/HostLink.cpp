#include "effect/ui/HostLink.h"

#include <lv2/atom/atom.h>
#include <lv2/midi/midi.h>

#include <algorithm>

namespace orvalo::effect::ui {

namespace {

/// The protocol of plain floats in write and port_event.
constexpr std::uint32_t floatProtocol = 0;

}  // namespace

HostLink::HostLink(const Features& features, LV2UI_Write_Function writeFunction,
                   LV2UI_Controller controller)
    : ports_(features.portMap),
      touch_(features.touch),
      subscribe_(features.portSubscribe),
      write_(writeFunction),
      controller_(controller) {
    if (const auto* map = features.map) {
        eventTransfer_ = map->map(map->handle, LV2_ATOM__eventTransfer);
        midiEvent_ = map->map(map->handle, LV2_MIDI__MidiEvent);
    }
    if (subscribe_ == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < readingCount; ++i) {
        if (const auto port = ports_.of(static_cast<Reading>(i));
            port != LV2UI_INVALID_PORT_INDEX) {
            subscribe_->subscribe(subscribe_->handle, port, floatProtocol, nullptr);
        }
    }
}

HostLink::~HostLink() {
    if (subscribe_ == nullptr) {
        return;
    }
    for (std::size_t i = 0; i < readingCount; ++i) {
        if (const auto port = ports_.of(static_cast<Reading>(i));
            port != LV2UI_INVALID_PORT_INDEX) {
            subscribe_->unsubscribe(subscribe_->handle, port, floatProtocol, nullptr);
        }
    }
}

void HostLink::write(Parameter parameter, float value) {
    const auto port = ports_.of(parameter);
    if (port != LV2UI_INVALID_PORT_INDEX && write_ != nullptr) {
        write_(controller_, port, sizeof value, floatProtocol, &value);
    }
}

void HostLink::sendMidi(const std::array<std::uint8_t, 3>& message) {
    const auto port = ports_.ofMidiInput();
    if (port == LV2UI_INVALID_PORT_INDEX || write_ == nullptr || eventTransfer_ == 0) {
        return;
    }
    struct {
        LV2_Atom atom;
        // Padded, as an atom in a sequence is: some hosts copy whole words.
        std::array<std::uint8_t, 8> bytes;
    } event{.atom = {static_cast<std::uint32_t>(message.size()), midiEvent_}, .bytes = {}};
    std::ranges::copy(message, event.bytes.begin());
    const auto size = static_cast<std::uint32_t>(sizeof event.atom + message.size());
    write_(controller_, port, size, eventTransfer_, &event);
}

void HostLink::grab(Parameter parameter, bool held) {
    const auto port = ports_.of(parameter);
    if (port != LV2UI_INVALID_PORT_INDEX && touch_ != nullptr) {
        touch_->touch(touch_->handle, port, held);
    }
}

}  // namespace orvalo::effect::ui
