#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>

#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/Zoo.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

/// Controls a unit from two threads while a third renders it, for the thread sanitizer and the
/// probe's own checks.
class Race : public ::testing::TestWithParam<const char*> {};

TEST_P(Race, ControlOverlapsRunningOnlyWhereThePluginAllowsIt) {
    const auto unit = makeZooUnit(GetParam());
    const auto presets = unit->factoryPresets();
    setControl(*unit, "chatter", 1.0F);
    setControl(*unit, "work", 1.0F);
    auto& seen = probeRecord();
    seen.controlCallsDuringRun = 0;
    seen.overlappingJobs = 0;
    seen.runs = 0;
    std::atomic<bool> isDone{false};
    std::atomic<std::int64_t> last{-1};
    std::atomic<bool> isInOrder{true};
    const auto count = [&](std::int64_t time, auto, auto, auto) {
        isInOrder = isInOrder && time > last;
        last = time;
        return 0;
    };
    std::thread render([&] {
        const auto input = noise(1, 32);
        while (!isDone) {
            const auto output = renderBlocks(*unit, input, {32}, 32);
            // Rendered or dry, but never garbage.
            for (std::size_t frame = 0; frame < 32; ++frame) {
                ASSERT_LE(std::abs(output[0][frame]), 4.0F * std::abs(input[0][frame]));
            }
        }
    });
    std::thread second([&] {
        for (int round = 0; round < 150; ++round) {
            unit->setMIDIOutputEventBlock(count);
            unit->setContextName(round % 2 == 0 ? "even" : "odd");
            unit->latency();
        }
    });
    for (std::size_t round = 0; round < 150; ++round) {
        unit->setCurrentPreset(presets[round % presets.size()]);
        setControl(*unit, "gain", static_cast<float>(round % 4));
        unit->MIDIOutputEventBlock();
        unit->factoryPresets();
    }
    second.join();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while ((seen.runs < 100 || last < 0) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    isDone = true;
    render.join();
    EXPECT_EQ(seen.controlCallsDuringRun, 0);
    EXPECT_EQ(seen.overlappingJobs, 0);
    EXPECT_TRUE(isInOrder);
    EXPECT_GE(last, 0);
}

INSTANTIATE_TEST_SUITE_P(Probes, Race, ::testing::Values("probe", "probe-safe"));

TEST(Race, UnitsAreMadeAndDestroyedConcurrently) {
    std::array<std::thread, 3> threads;
    for (auto& thread : threads) {
        thread = std::thread([] {
            for (int round = 0; round < 10; ++round) {
                const auto unit = makeZooUnit("probe");
                unit->allocateRenderResources(44100.0);
                unit->factoryPresets();
                renderBlocks(*unit, noise(1, 64), {16}, 64);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

}  // namespace
