#include "tests/effect/EventSequence.h"

#include <gtest/gtest.h>
#include <lv2/atom/util.h>
#include <lv2/midi/midi.h>
#include <lv2/time/time.h>

#include <cstring>
#include <iomanip>
#include <string>

namespace orvalo::testing {

void PrintTo(const MidiMessage& message, std::ostream* stream) {
    *stream << '@' << message.frame << std::hex;
    for (const auto byte : message.bytes) {
        *stream << ' ' << static_cast<int>(byte);
    }
    *stream << std::dec;
}

EventSequence::EventSequence(UridMap& uris, std::uint32_t size)
    : uris_(uris),
      storage_(size / 8 + 1),
      room_(size - static_cast<std::uint32_t>(sizeof(LV2_Atom))),
      sequence_(uris[LV2_ATOM__Sequence]),
      midi_(uris[LV2_MIDI__MidiEvent]),
      object_(uris[LV2_ATOM__Object]) {
    clear();
}

void EventSequence::clear() {
    lv2_atom_sequence_clear(data());
    data()->atom.type = sequence_;
    data()->body = {.unit = 0, .pad = 0};
}

void EventSequence::append(std::int64_t frame, const std::uint8_t* bytes, std::uint32_t size) {
    append(frame, midi_, bytes, size);
}

void EventSequence::append(std::int64_t frame, LV2_URID type, const void* bytes,
                           std::uint32_t size) {
    const auto needed =
        static_cast<std::uint32_t>(sizeof(LV2_Atom_Event)) + lv2_atom_pad_size(size);
    ASSERT_LE(data()->atom.size + needed, room_);
    LV2_Atom_Event* event = lv2_atom_sequence_end(&data()->body, data()->atom.size);
    event->time.frames = frame;
    event->body = {.size = size, .type = type};
    std::memcpy(event + 1, bytes, size);
    data()->atom.size += needed;
}

void EventSequence::appendPosition(std::int64_t frame,
                                   const std::vector<std::pair<const char*, double>>& values) {
    struct Property {
        LV2_Atom_Property_Body head;
        double value;
    };
    std::vector<std::uint8_t> bytes(sizeof(LV2_Atom_Object_Body) +
                                    values.size() * sizeof(Property));
    const LV2_Atom_Object_Body object{.id = 0, .otype = uris_[LV2_TIME__Position]};
    std::memcpy(bytes.data(), &object, sizeof object);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string key = std::string(LV2_TIME_PREFIX) + values[i].first;
        const Property property{.head = {.key = uris_[key],
                                         .context = 0,
                                         .value = {sizeof(double), uris_[LV2_ATOM__Double]}},
                                .value = values[i].second};
        std::memcpy(bytes.data() + sizeof object + i * sizeof property, &property, sizeof property);
    }
    append(frame, uris_[LV2_ATOM__Object], bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

void EventSequence::appendObject(std::int64_t frame, const char* uri) {
    const LV2_Atom_Object_Body object{.id = 0, .otype = uris_[uri]};
    append(frame, uris_[LV2_ATOM__Object], &object, sizeof object);
}

void EventSequence::offer() {
    data()->atom = {.size = room_, .type = 0};
}

std::vector<MidiMessage> EventSequence::messages(std::int64_t start) {
    std::vector<MidiMessage> messages;
    EXPECT_EQ(data()->atom.type, sequence_);
    EXPECT_EQ(data()->body.unit, 0U);
    LV2_ATOM_SEQUENCE_FOREACH(data(), event) {
        if (event->body.type == object_) {
            continue;
        }
        EXPECT_EQ(event->body.type, midi_);
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(event + 1);
        messages.push_back({start + event->time.frames, {bytes, bytes + event->body.size}});
    }
    return messages;
}

std::vector<std::vector<std::uint8_t>> EventSequence::objects() {
    std::vector<std::vector<std::uint8_t>> objects;
    LV2_ATOM_SEQUENCE_FOREACH(data(), event) {
        if (event->body.type == object_) {
            const auto* bytes = reinterpret_cast<const std::uint8_t*>(event + 1);
            objects.emplace_back(bytes, bytes + event->body.size);
        }
    }
    return objects;
}

}  // namespace orvalo::testing
