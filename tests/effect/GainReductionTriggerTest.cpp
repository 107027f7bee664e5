#include "effect/dsp/GainReductionTrigger.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using orvalo::effect::GainReductionTrigger;
using orvalo::effect::MidiOutput;

struct Message {
    std::uint32_t frame;
    int status;
    int note;
    int velocity;
    bool operator==(const Message&) const = default;
};

void PrintTo(const Message& message, std::ostream* stream) {
    *stream << '@' << message.frame << ' ' << message.status << ' ' << message.note << ' '
            << message.velocity;
}

class Recorder final : public MidiOutput {
  public:
    bool write(std::uint32_t frame, const std::array<std::uint8_t, 3>& bytes) override {
        if (room == 0) {
            return false;
        }
        --room;
        messages.push_back({frame, bytes[0], bytes[1], bytes[2]});
        return true;
    }

    std::size_t room = 1000;
    std::vector<Message> messages;
};

/// At 1000 frames per second a note lasts at least 20 frames.
class GainReductionTriggerTest : public testing::Test {
  protected:
    GainReductionTriggerTest() { trigger.configure(settings); }

    std::vector<Message> process(const std::vector<float>& reduction, std::uint32_t first = 0) {
        recorder.messages.clear();
        trigger.process(reduction.data(), reduction.data(),
                        static_cast<std::uint32_t>(reduction.size()), first, recorder);
        return recorder.messages;
    }

    static std::vector<float> parts(std::initializer_list<std::pair<int, float>> lengths) {
        std::vector<float> values;
        for (const auto& [length, value] : lengths) {
            values.insert(values.end(), static_cast<std::size_t>(length), value);
        }
        return values;
    }

    using Messages = std::vector<Message>;
    Recorder recorder;
    GainReductionTrigger trigger{1000.0};
    GainReductionTrigger::Settings settings{.level = 6.0F, .note = 40, .channel = 2, .armed = true};
};

TEST_F(GainReductionTriggerTest, SendsAPairAtTheExactFrames) {
    EXPECT_EQ(process(parts({{10, 5.9F}, {30, 6.0F}, {5, 4.0F}, {10, 3.9F}}), 100),
              (Messages{{110, 0x92, 40, 40}, {145, 0x82, 40, 64}}));
}

TEST_F(GainReductionTriggerTest, KeepsItsStateBetweenTheTwoLevels) {
    EXPECT_EQ(process(parts({{30, 5.99F}})), Messages{});
    EXPECT_EQ(process(parts({{1, 7.0F}, {100, 4.0F}, {50, 6.5F}, {50, 4.0F}})),
              (Messages{{0, 0x92, 40, 45}}));
}

TEST_F(GainReductionTriggerTest, LowLevelsEndAtHalfTheLevel) {
    settings.level = 2.0F;
    trigger.configure(settings);
    EXPECT_EQ(process(parts({{30, 2.0F}, {10, 1.0F}, {10, 0.9F}})),
              (Messages{{0, 0x92, 40, 40}, {40, 0x82, 40, 64}}));
}

TEST_F(GainReductionTriggerTest, NoteLastsAtLeast20Milliseconds) {
    EXPECT_EQ(process(parts({{1, 8.0F}, {100, 0.0F}})),
              (Messages{{0, 0x92, 40, 50}, {20, 0x82, 40, 64}}));
    EXPECT_EQ(process(parts({{1, 8.0F}, {5, 0.0F}})), (Messages{{0, 0x92, 40, 50}}));
    EXPECT_EQ(process(parts({{30, 0.0F}})), (Messages{{14, 0x82, 40, 64}}));
}

TEST_F(GainReductionTriggerTest, VelocityGrowsWithDepth) {
    EXPECT_EQ(GainReductionTrigger::velocity(6.0F, 6.0F), 40);
    EXPECT_EQ(GainReductionTrigger::velocity(5.0F, 6.0F), 40);
    EXPECT_EQ(GainReductionTrigger::velocity(16.0F, 6.0F), 90);
    EXPECT_EQ(GainReductionTrigger::velocity(23.3F, 6.0F), 127);
    EXPECT_EQ(GainReductionTrigger::velocity(23.6F, 6.0F), 127);
    EXPECT_EQ(GainReductionTrigger::velocity(300.0F, 6.0F), 127);
}

TEST_F(GainReductionTriggerTest, ChangedNoteOrChannelEndsTheOldNote) {
    process(parts({{5, 10.0F}}));
    settings.note = 41;
    trigger.configure(settings);
    EXPECT_EQ(process(parts({{5, 10.0F}})), (Messages{{0, 0x82, 40, 64}, {0, 0x92, 41, 60}}));
    settings.channel = 9;
    trigger.configure(settings);
    EXPECT_EQ(process(parts({{5, 10.0F}}), 7), (Messages{{7, 0x82, 41, 64}, {7, 0x99, 41, 60}}));
}

TEST_F(GainReductionTriggerTest, DisarmingEndsTheNoteAndStartsNone) {
    process(parts({{5, 10.0F}}));
    settings.armed = false;
    trigger.configure(settings);
    EXPECT_EQ(process(parts({{50, 10.0F}})), (Messages{{0, 0x82, 40, 64}}));
    EXPECT_EQ(process(parts({{50, 0.0F}, {50, 10.0F}})), Messages{});
    settings.armed = true;
    trigger.configure(settings);
    EXPECT_EQ(process(parts({{50, 10.0F}})), (Messages{{0, 0x92, 40, 60}}));
}

TEST_F(GainReductionTriggerTest, ResetEndsTheNoteAtTheNextFrame) {
    process(parts({{5, 10.0F}}));
    trigger.reset();
    EXPECT_EQ(process({}), Messages{});
    EXPECT_EQ(process(parts({{5, 0.0F}})), (Messages{{0, 0x82, 40, 64}}));
}

TEST_F(GainReductionTriggerTest, MessagesWithoutRoomAreSentLaterInPairs) {
    recorder.room = 0;
    EXPECT_EQ(process(parts({{30, 10.0F}})), Messages{});
    recorder.room = 1;
    EXPECT_EQ(process(parts({{30, 10.0F}, {30, 0.0F}})), (Messages{{0, 0x92, 40, 60}}));
    recorder.room = 1;
    EXPECT_EQ(process(parts({{30, 0.0F}})), (Messages{{0, 0x82, 40, 64}}));
}

}  // namespace
