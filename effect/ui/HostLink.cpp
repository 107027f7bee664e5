#include "effect/ui/HostLink.h"

#include <lv2/atom/atom.h>
#include <lv2/midi/midi.h>

#include <cstring>

#include "effect/DetectorEvents.h"

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
        object_ = map->map(map->handle, LV2_ATOM__Object);
        watchDetector_ = map->map(map->handle, watchDetectorUri);
        detectorSpectrum_ = map->map(map->handle, detectorSpectrumUri);
        bandLevels_ = map->map(map->handle, bandLevelsUri);
    }
    setSubscribed(true);
}

HostLink::~HostLink() {
    setSubscribed(false);
}

void HostLink::setSubscribed(bool isSubscribed) {
    if (subscribe_ == nullptr) {
        return;
    }
    const auto set = isSubscribed ? subscribe_->subscribe : subscribe_->unsubscribe;
    for (std::size_t i = 0; i < readingPorts.size(); ++i) {
        if (const auto port = ports_.of(static_cast<Reading>(i));
            port != LV2UI_INVALID_PORT_INDEX) {
            set(subscribe_->handle, port, floatProtocol, nullptr);
        }
    }
    if (eventTransfer_ != 0 && ports_.ofMidiOutput() != LV2UI_INVALID_PORT_INDEX) {
        set(subscribe_->handle, ports_.ofMidiOutput(), eventTransfer_, nullptr);
    }
}

void HostLink::write(Parameter parameter, float value) {
    const auto port = ports_.of(parameter);
    if (port != LV2UI_INVALID_PORT_INDEX && write_ != nullptr) {
        write_(controller_, port, sizeof value, floatProtocol, &value);
    }
}

void HostLink::writeEvent(LV2_URID type, const void* body, std::uint32_t size) {
    const auto port = ports_.ofMidiInput();
    if (port == LV2UI_INVALID_PORT_INDEX || write_ == nullptr || eventTransfer_ == 0) {
        return;
    }
    struct {
        LV2_Atom atom;
        // Padded, as an atom in a sequence is: some hosts copy whole words.
        std::array<std::uint8_t, 8> bytes;
    } event{.atom = {size, type}, .bytes = {}};
    std::memcpy(event.bytes.data(), body, size);
    write_(controller_, port, static_cast<std::uint32_t>(sizeof event.atom) + size, eventTransfer_,
           &event);
}

void HostLink::sendMidi(const std::array<std::uint8_t, 3>& message) {
    writeEvent(midiEvent_, message.data(), static_cast<std::uint32_t>(message.size()));
}

void HostLink::requestSpectrum() {
    const LV2_Atom_Object_Body request{.id = 0, .otype = watchDetector_};
    writeEvent(object_, &request, sizeof request);
}

std::optional<SpectrumBank::Levels> HostLink::spectrumIn(std::uint32_t port, std::uint32_t size,
                                                         std::uint32_t format,
                                                         const void* buffer) const {
    struct {
        LV2_Atom atom;
        DetectorSpectrum spectrum;
    } event{};
    if (port != ports_.ofMidiOutput() || format != eventTransfer_ || format == 0 ||
        size < sizeof event) {
        return std::nullopt;
    }
    std::memcpy(&event, buffer, sizeof event);
    const auto& spectrum = event.spectrum;
    if (event.atom.type != object_ || event.atom.size != sizeof spectrum ||
        spectrum.object.otype != detectorSpectrum_ || spectrum.levels.key != bandLevels_ ||
        spectrum.vector.child_size != sizeof(float)) {
        return std::nullopt;
    }
    return spectrum.values;
}

void HostLink::grab(Parameter parameter, bool held) {
    const auto port = ports_.of(parameter);
    if (port != LV2UI_INVALID_PORT_INDEX && touch_ != nullptr) {
        touch_->touch(touch_->handle, port, held);
    }
}

}  // namespace orvalo::effect::ui
