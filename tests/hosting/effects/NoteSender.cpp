// Two stereo effects that halve their input. The first has a MIDI output: it sends a note at frame
// 512 and a program change, of two bytes, at frame 1024.

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/urid/urid.h>

#include <array>
#include <cstdint>
#include <cstring>

namespace {

enum Port : std::uint32_t { inputLeft, inputRight, outputLeft, outputRight, notes };

struct Event {
    std::int64_t frame;
    std::uint32_t size;
    std::array<std::uint8_t, 3> bytes;
};

constexpr std::array<Event, 2> kEvents{{{512, 3, {0x90, 60, 100}}, {1024, 2, {0xC0, 5}}}};

struct NoteSender {
    std::array<const float*, 2> inputs{};
    std::array<float*, 2> outputs{};
    LV2_Atom_Sequence* sequence = nullptr;
    LV2_URID sequenceType = 0;
    LV2_URID midiEventType = 0;
    std::int64_t frame = 0;

    void run(std::uint32_t frames) {
        for (std::size_t channel = 0; channel < 2; ++channel) {
            for (std::uint32_t index = 0; index < frames; ++index) {
                outputs[channel][index] = inputs[channel][index] / 2;
            }
        }
        if (sequence != nullptr) {
            send(frames);
        }
        frame += frames;
    }

    void send(std::uint32_t frames) {
        sequence->atom.type = sequenceType;
        sequence->atom.size = sizeof(LV2_Atom_Sequence_Body);
        sequence->body = {};
        for (const auto& event : kEvents) {
            if (event.frame < frame || event.frame >= frame + frames) {
                continue;
            }
            auto* place =
                reinterpret_cast<std::uint8_t*>(sequence) + sizeof(LV2_Atom) + sequence->atom.size;
            LV2_Atom_Event head{};
            head.time.frames = event.frame - frame;
            head.body = {event.size, midiEventType};
            std::memcpy(place, &head, sizeof head);
            std::memcpy(place + sizeof head, event.bytes.data(), event.bytes.size());
            sequence->atom.size += sizeof head + 8;
        }
    }
};

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/,
                       const char* /*bundle*/, const LV2_Feature* const* features) {
    auto* sender = new NoteSender;
    for (; *features != nullptr; ++features) {
        if (std::strcmp((*features)->URI, LV2_URID__map) == 0) {
            const auto* map = static_cast<const LV2_URID_Map*>((*features)->data);
            sender->sequenceType = map->map(map->handle, LV2_ATOM__Sequence);
            sender->midiEventType = map->map(map->handle, LV2_MIDI__MidiEvent);
        }
    }
    return sender;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* data) {
    auto* sender = static_cast<NoteSender*>(handle);
    switch (port) {
        case inputLeft:
        case inputRight:
            sender->inputs[port - inputLeft] = static_cast<const float*>(data);
            break;
        case outputLeft:
        case outputRight:
            sender->outputs[port - outputLeft] = static_cast<float*>(data);
            break;
        default:
            sender->sequence = static_cast<LV2_Atom_Sequence*>(data);
    }
}

void run(LV2_Handle handle, std::uint32_t frames) {
    static_cast<NoteSender*>(handle)->run(frames);
}

void cleanup(LV2_Handle handle) {
    delete static_cast<NoteSender*>(handle);
}

constexpr LV2_Descriptor descriptor(const char* uri) {
    return {uri, instantiate, connectPort, nullptr, run, nullptr, cleanup, nullptr};
}

constexpr std::array<LV2_Descriptor, 2> kDescriptors{descriptor("urn:orvalo-test:first"),
                                                     descriptor("urn:orvalo-test:second")};

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index < kDescriptors.size() ? &kDescriptors[index] : nullptr;
}
