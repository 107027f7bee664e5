// A plug-in whose event output is wrong, in a different way in each mode.

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/urid/urid.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <string_view>

namespace {

enum Mode { kLengths, kUnsorted, kHugeSequence, kHugeEvent, kNegativeSize, kUntouched, kBeats };

struct Liar {
    LV2_URID sequence = 0;
    LV2_URID midi = 0;
    LV2_URID beats = 0;
    std::array<void*, 8> ports{};
    std::uint32_t written = 0;
};

Liar& liar(LV2_Handle handle) {
    return *static_cast<Liar*>(handle);
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/,
                       const char* /*bundle*/, const LV2_Feature* const* features) {
    auto* self = new Liar;
    for (; *features != nullptr; ++features) {
        if (std::string_view((*features)->URI) == LV2_URID__map) {
            const auto* map = static_cast<const LV2_URID_Map*>((*features)->data);
            self->sequence = map->map(map->handle, LV2_ATOM__Sequence);
            self->midi = map->map(map->handle, LV2_MIDI__MidiEvent);
            self->beats = map->map(map->handle, LV2_ATOM__beatTime);
        }
    }
    return self;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    liar(handle).ports[port] = location;
}

void write(Liar& self, std::int64_t frame, std::initializer_list<std::uint8_t> bytes,
           std::uint32_t statedSize) {
    auto* at = static_cast<std::uint8_t*>(self.ports[3]) + sizeof(LV2_Atom_Sequence) + self.written;
    LV2_Atom_Event event{};
    event.time.frames = frame;
    event.body = {statedSize, self.midi};
    std::memcpy(at, &event, sizeof(event));
    std::copy(bytes.begin(), bytes.end(), at + sizeof(event));
    self.written += static_cast<std::uint32_t>(sizeof(event) + (bytes.size() + 7) / 8 * 8);
}

void write(Liar& self, std::int64_t frame, std::initializer_list<std::uint8_t> bytes) {
    write(self, frame, bytes, static_cast<std::uint32_t>(bytes.size()));
}

void run(LV2_Handle handle, std::uint32_t frames) {
    auto& self = liar(handle);
    std::copy_n(static_cast<const float*>(self.ports[0]), frames,
                static_cast<float*>(self.ports[1]));
    const auto mode = static_cast<int>(*static_cast<const float*>(self.ports[2]));
    *static_cast<float*>(self.ports[4]) =
        mode == kLengths ? std::numeric_limits<float>::quiet_NaN() : -5.0F * 1e30F;
    // The host provides silence at the CV input and leaves optional ports unconnected.
    const auto* cv = static_cast<const float*>(self.ports[6]);
    const bool isSilent = std::all_of(cv, cv + frames, [](float value) { return value == 0.0F; });
    if (self.ports[5] != nullptr || self.ports[7] != nullptr || !isSilent || mode == kUntouched) {
        return;
    }
    auto* target = static_cast<LV2_Atom_Sequence*>(self.ports[3]);
    self.written = 0;
    target->body = {mode == kBeats ? self.beats : 0, 0};
    switch (mode) {
        case kLengths:
            write(self, 0, {});
            write(self, 1, {0xF8});
            write(self, 2, {0xC0, 7});
            write(self, 3, {0xF0, 1, 2, 3, 4, 5, 6, 7, 8, 0xF7});
            break;
        case kUnsorted:
            write(self, 9, {0x90, 1, 1});
            write(self, 4, {0x90, 2, 1});
            write(self, -3, {0x90, 3, 1});
            write(self, std::numeric_limits<std::int64_t>::max(), {0x90, 4, 1});
            write(self, std::numeric_limits<std::int64_t>::min(), {0x90, 5, 1});
            break;
        case kHugeEvent:
            write(self, 0, {0x90, 1, 1});
            write(self, 0, {0x90, 2, 1}, std::numeric_limits<std::uint32_t>::max());
            write(self, 0, {0x90, 3, 1});
            break;
        default:
            write(self, 0, {0x90, 1, 1});
            break;
    }
    target->atom = {static_cast<std::uint32_t>(sizeof(target->body)) + self.written, self.sequence};
    if (mode == kHugeSequence) {
        target->atom.size = std::numeric_limits<std::uint32_t>::max();
    } else if (mode == kNegativeSize) {
        target->atom.size = 3;
    }
}

void cleanup(LV2_Handle handle) {
    delete &liar(handle);
}

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static const LV2_Descriptor descriptor{
        "urn:orvalo:zoo:liar", instantiate, connectPort, nullptr, run, nullptr, cleanup, nullptr};
    return index == 0 ? &descriptor : nullptr;
}
