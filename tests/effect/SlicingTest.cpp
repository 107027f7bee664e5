#include <gtest/gtest.h>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

struct Result {
    Stereo output;
    std::vector<MidiMessage> sent;
};

Result render(const std::vector<std::uint32_t>& lengths, bool inPlace) {
    EffectHost host;
    host.control("threshold") = -30.0F;
    host.control("attack") = 2.0F;
    host.control("release") = 40.0F;
    host.control("mix") = 80.0F;
    host.activate();
    const std::vector<MidiMessage> notes{{0, {0x90, 60, 80}},      {63, {0x90, 61, 127}},
                                         {64, {0x80, 61, 0}},      {30001, {0x80, 60, 0}},
                                         {45003, {0x94, 12, 127}}, {45003, {0x90, 13, 1}},
                                         {47777, {0xB4, 123, 0}}};
    auto output = host.render(noiseBursts(60000), lengths, notes, inPlace);
    return {.output = std::move(output), .sent = host.sent()};
}

TEST(Slicing, ChangesNoSampleAndNoMessage) {
    const auto expected = render({60000}, false);
    ASSERT_GT(expected.sent.size(), 4U);
    const std::vector<std::vector<std::uint32_t>> slicings{{1},  {7},    {64},
                                                           {65}, {4096}, {1, 1000, 3, 0, 64, 129}};
    for (const auto& lengths : slicings) {
        for (const bool inPlace : {false, true}) {
            const auto result = render(lengths, inPlace);
            EXPECT_EQ(result.output, expected.output) << lengths[0] << ' ' << inPlace;
            EXPECT_EQ(result.sent, expected.sent) << lengths[0] << ' ' << inPlace;
        }
    }
}

TEST(Slicing, InstancesAreIndependent) {
    EffectHost first;
    EffectHost second;
    first.activate();
    second.activate();
    const auto input = noiseBursts(4096);
    const auto alone = first.render(input);
    second.render(noiseBursts(4096, 9));
    first.deactivate();
    first.activate();
    EXPECT_EQ(first.render(input), alone);
}

}  // namespace
