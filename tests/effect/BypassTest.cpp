#include <gtest/gtest.h>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

TEST(Bypass, KeepsTheSignalBitForBit) {
    EffectHost host;
    host.control("enabled") = 0.0F;
    host.activate();
    const auto input = noiseBursts(20000);
    EXPECT_EQ(host.render(input), input);
    EXPECT_EQ(host.sent(), std::vector<MidiMessage>{});
}

TEST(Bypass, EndsASoundingNoteAtOnce) {
    EffectHost host;
    host.control("trigger_note") = 50.0F;
    host.control("midi_channel") = 5.0F;
    host.activate();
    host.render(steady(9600, 1.0F));
    ASSERT_EQ(host.sent().size(), 1U);
    host.control("enabled") = 0.0F;
    host.render(steady(9600, 1.0F));
    ASSERT_EQ(host.sent().size(), 2U);
    EXPECT_EQ(host.sent()[1], (MidiMessage{9600, {0x84, 50, 64}}));
}

TEST(Bypass, ResumesWithTheStateOfAnActiveEffect) {
    EffectHost bypassed;
    EffectHost working;
    bypassed.control("enabled") = 0.0F;
    bypassed.activate();
    working.activate();
    const auto input = noiseBursts(48000);
    bypassed.render(input);
    working.render(input);
    bypassed.control("enabled") = 1.0F;
    bypassed.render(steady(960, 0.5F));  // 20 ms of cross-fade
    working.render(steady(960, 0.5F));
    EXPECT_EQ(bypassed.render(input), working.render(input));
}

}  // namespace
