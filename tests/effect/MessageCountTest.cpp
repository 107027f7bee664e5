#include <gtest/gtest.h>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

TEST(MessageCounts, Are0BeforeTheFirstMessage) {
    EffectHost host;
    host.control("midi_in_count") = host.control("midi_out_count") = -1.0F;
    host.activate();
    host.render(steady(512, 0.0F));
    EXPECT_EQ(host.control("midi_in_count"), 0.0F);
    EXPECT_EQ(host.control("midi_out_count"), 0.0F);
}

TEST(MessageCounts, CountReceivedAndSentMessages) {
    EffectHost host;
    host.control("threshold") = -40.0F;
    host.control("attack") = 1.0F;
    host.activate();
    host.render(steady(4800, 1.0F), {512}, {{10, {0x90, 60, 1}}, {600, {0xB0, 7, 1}}});
    EXPECT_EQ(host.control("midi_in_count"), 2.0F);
    ASSERT_EQ(host.sent().size(), 1U);
    EXPECT_EQ(host.control("midi_out_count"), 1.0F);
    host.control("release") = 5.0F;
    host.render(steady(48000, 0.0F));
    EXPECT_EQ(host.sent().size(), 2U);
    EXPECT_EQ(host.control("midi_out_count"), 2.0F);
}

TEST(MessageCounts, ReturnTo0AfterTheirMaximum) {
    EffectHost host;
    host.activate();
    const float silence = 0.0F;
    float left = 0.0F;
    float right = 0.0F;
    const std::uint8_t clock = 0xF8;
    for (int turn = 0; turn < 64; ++turn) {
        host.midiIn().clear();
        for (int i = 0; i < 1024; ++i) {
            host.midiIn().append(0, &clock, 1);
        }
        host.run(&silence, &silence, &left, &right, 1);
        EXPECT_EQ(host.control("midi_in_count"), static_cast<float>(1024 * (turn + 1) % 65536));
    }
}

TEST(RunCount, ChangesWithEveryBlock) {
    EffectHost host;
    host.activate();
    for (const float expected : {1.0F, 2.0F, 3.0F}) {
        host.render(steady(64, 0.0F));
        EXPECT_EQ(host.control("run_count"), expected);
    }
}

}  // namespace
