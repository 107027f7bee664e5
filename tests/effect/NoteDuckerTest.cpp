#include "effect/dsp/NoteDucker.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <vector>

namespace {

using orvalo::effect::NoteDucker;

constexpr double rate = 48000.0;

class NoteDuckerTest : public testing::Test {
  protected:
    NoteDuckerTest() { ducker.configure(24.0F, 200.0F, std::nullopt); }

    void send(std::initializer_list<int> message) {
        std::vector<std::uint8_t> bytes;
        for (const int byte : message) {
            bytes.push_back(static_cast<std::uint8_t>(byte));
        }
        ducker.receive(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }

    std::vector<float> process(std::uint32_t frames) {
        std::vector<float> values(frames);
        ducker.process(values.data(), frames);
        return values;
    }

    /// The ducking after it has settled.
    float settled() { return process(static_cast<std::uint32_t>(rate * 4)).back(); }

    NoteDucker ducker{rate};
};

TEST_F(NoteDuckerTest, DepthFollowsVelocity) {
    for (const int velocity : {1, 32, 64, 100, 127}) {
        send({0x90, 60, velocity});
        EXPECT_NEAR(settled(), 24.0F * static_cast<float>(velocity) / 127.0F, 1e-3F);
        send({0x80, 60, 0});
        EXPECT_EQ(settled(), 0.0F);
    }
}

TEST_F(NoteDuckerTest, FallsInMillisecondsAndRecoversWithTheRelease) {
    send({0x90, 60, 127});
    const auto down = process(4800);
    for (std::size_t i = 0; i < 480; ++i) {
        const double time = static_cast<double>(i + 1) / rate;
        ASSERT_NEAR(down[i], 24.0 * (1.0 - std::exp(-time / 0.003)), 1e-4) << i;
    }
    settled();
    send({0x80, 60, 64});
    const auto up = process(24000);
    for (std::size_t i = 0; i < up.size(); i += 50) {
        const double time = static_cast<double>(i + 1) / rate;
        ASSERT_NEAR(up[i], 24.0 * std::exp(-time / 0.2), 2e-4) << i;
    }
}

TEST_F(NoteDuckerTest, HighestVelocityOfSeveralNotesCounts) {
    send({0x90, 60, 127});
    send({0x95, 61, 64});
    EXPECT_NEAR(settled(), 24.0F, 1e-3F);
    send({0x80, 60, 0});
    EXPECT_NEAR(settled(), 24.0F * 64.0F / 127.0F, 1e-3F);
    send({0x95, 61, 0});  // velocity 0 is a note off
    EXPECT_EQ(settled(), 0.0F);
}

TEST_F(NoteDuckerTest, ChannelModesEndTheNotesOfTheirChannel) {
    for (const int controller : {120, 123, 124, 125, 126, 127}) {
        send({0x90, 60, 127});
        send({0x91, 60, 64});
        send({0xB0, controller, 0});
        EXPECT_NEAR(settled(), 24.0F * 64.0F / 127.0F, 1e-3F) << controller;
        send({0xB1, controller, 0});
        EXPECT_EQ(settled(), 0.0F) << controller;
    }
}

TEST_F(NoteDuckerTest, OtherControllersAndMessagesEndNothing) {
    send({0x90, 60, 127});
    for (const int controller : {0, 7, 64, 119, 121, 122}) {
        send({0xB0, controller, 0});
    }
    send({0xE0, 0, 0});
    send({0xD0, 60});
    send({0xF8});
    send({0x80, 60});        // incomplete
    send({0x80, 200, 0});    // no note number
    send({0x90, 60, 0, 0});  // too long
    EXPECT_NEAR(settled(), 24.0F, 1e-3F);
    send({0xFF});
    EXPECT_EQ(settled(), 0.0F);
}

TEST_F(NoteDuckerTest, ReceivesOnlyItsChannelOnceSet) {
    send({0x90, 60, 127});
    send({0x93, 60, 64});
    ducker.configure(24.0F, 200.0F, 3);
    EXPECT_NEAR(settled(), 24.0F * 64.0F / 127.0F, 1e-3F);
    send({0x90, 61, 127});
    send({0x83, 60, 0});
    EXPECT_EQ(settled(), 0.0F);
}

TEST_F(NoteDuckerTest, FollowsDepthChangesDuringANote) {
    send({0x90, 60, 127});
    settled();
    ducker.configure(6.0F, 200.0F, std::nullopt);
    EXPECT_NEAR(settled(), 6.0F, 1e-3F);
}

TEST_F(NoteDuckerTest, ResetReleasesAllNotes) {
    send({0x90, 60, 127});
    settled();
    ducker.reset();
    EXPECT_EQ(process(3), (std::vector<float>{0.0F, 0.0F, 0.0F}));
}

}  // namespace
