#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "effect/MidiSequenceWriter.h"
#include "effect/SequenceReader.h"
#include "tests/effect/EventSequence.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::MidiSequenceWriter;
using orvalo::effect::SequenceReader;

using Messages = std::vector<MidiMessage>;

class MidiSequenceTest : public testing::Test {
  protected:
    /// All events that the reader gives for a block of `frames` frames.
    Messages read(std::uint32_t frames) {
        SequenceReader reader(sequence.data(), numbers, frames);
        Messages messages;
        SequenceReader::Event event{};
        while (reader.next(event)) {
            messages.push_back({event.frame, {event.bytes, event.bytes + event.size}});
        }
        return messages;
    }

    LV2_Atom_Event& firstEvent() {
        return *reinterpret_cast<LV2_Atom_Event*>(&sequence.data()->body + 1);
    }

    UridMap uris;
    orvalo::effect::Uris numbers{uris.map()};
    EventSequence sequence{uris, 1024};
    const std::array<std::uint8_t, 3> on{0x90, 60, 100};
};

TEST_F(MidiSequenceTest, ReadsMidiAndSkipsOtherEvents) {
    sequence.append(3, on.data(), 3);
    sequence.append(5, on.data(), 2);
    sequence.append(9, on.data(), 1);
    const Messages all{{3, {0x90, 60, 100}}, {5, {0x90, 60}}, {9, {0x90}}};
    EXPECT_EQ(read(64), all);
    firstEvent().body.type = uris["urn:example:other"];
    EXPECT_EQ(read(64), (Messages{all[1], all[2]}));
}

TEST_F(MidiSequenceTest, FramesAreClampedToTheBlockAndOrdered) {
    for (const std::int64_t frame : {-7, 20, 10, 5000}) {
        sequence.append(frame, on.data(), 1);
    }
    EXPECT_EQ(read(64), (Messages{{0, {0x90}}, {20, {0x90}}, {20, {0x90}}, {64, {0x90}}}));
    sequence.data()->body.unit = uris["http://lv2plug.in/ns/ext/time#beat"];
    EXPECT_EQ(read(64), (Messages{{0, {0x90}}, {0, {0x90}}, {0, {0x90}}, {0, {0x90}}}));
}

TEST_F(MidiSequenceTest, DoesNotReadBeyondTheStatedSize) {
    sequence.append(0, on.data(), 3);
    firstEvent().body.size = 9;
    EXPECT_EQ(read(64), Messages{});
    firstEvent().body.size = 8;
    EXPECT_EQ(read(64).size(), 1U);
    firstEvent().body.size = 0xFFFFFFFF;
    EXPECT_EQ(read(64), Messages{});
    firstEvent().body.size = 3;
    for (const std::uint32_t size : {0U, 7U, 8U, 23U, 26U}) {
        sequence.data()->atom.size = size;
        EXPECT_EQ(read(64), Messages{}) << size;
    }
    // A host may omit the padding of the last event.
    sequence.data()->atom.size = 27;
    EXPECT_EQ(read(64).size(), 1U);
}

TEST_F(MidiSequenceTest, OtherAtomsHaveNoEvents) {
    sequence.append(0, on.data(), 3);
    sequence.data()->atom.type = uris["urn:example:other"];
    EXPECT_EQ(read(64), Messages{});
    SequenceReader::Event event{};
    EXPECT_FALSE(SequenceReader(nullptr, numbers, 64).next(event));
}

TEST_F(MidiSequenceTest, WritesNothingBeyondItsCapacity) {
    constexpr std::uint32_t eventSize = 24;
    for (std::uint32_t room = 0; room < 4 * eventSize; ++room) {
        std::memset(static_cast<void*>(sequence.data()), 0x55, 1024);
        sequence.data()->atom.size = room;
        MidiSequenceWriter writer(sequence.data(), numbers);
        std::uint32_t written = 0;
        while (written < 100 && writer.write(written, on)) {
            ++written;
        }
        EXPECT_EQ(written, room < 8 ? 0 : (room - 8) / eventSize) << room;
        std::array<unsigned char, 1024> bytes{};
        std::memcpy(bytes.data(), sequence.data(), bytes.size());
        for (std::size_t i = sizeof(LV2_Atom) + room; i < bytes.size(); ++i) {
            ASSERT_EQ(bytes.at(i), 0x55) << room << ' ' << i;
        }
        if (room >= 8) {
            EXPECT_EQ(sequence.messages(0).size(), written);
        }
    }
}

TEST_F(MidiSequenceTest, WritingWithoutASequenceSucceeds) {
    EXPECT_TRUE(MidiSequenceWriter(nullptr, numbers).write(0, on));
    sequence.offer();
    const auto before = sequence.data()->atom;
    EXPECT_TRUE(MidiSequenceWriter(sequence.data(), orvalo::effect::Uris(nullptr)).write(0, on));
    EXPECT_EQ(sequence.data()->atom.size, before.size);
}

}  // namespace
