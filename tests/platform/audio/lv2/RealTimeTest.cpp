#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/Zoo.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

/// Renders one unit with preallocated memory.
class Blocks {
  public:
    explicit Blocks(AUAudioUnit& unit) : unit_(unit) {
        for (std::size_t channel = 0; channel < kMaximumChannels; ++channel) {
            inputs_[channel] = input_[channel % 2].data();
            outputs_[channel] = output_[channel].data();
        }
    }

    void render(int count) {
        for (int block = 0; block < count; ++block) {
            unit_.render({inputs_.data(), unit_.inputChannelCount(), 64},
                         {outputs_.data(), unit_.outputChannelCount(), 64});
        }
    }

  private:
    AUAudioUnit& unit_;
    Channels input_ = noise(2, 64);
    Channels output_ = noise(kMaximumChannels, 64);
    std::array<float*, kMaximumChannels> inputs_{};
    std::array<float*, kMaximumChannels> outputs_{};
};

TEST(RealTime, RenderingIsRealTimeSafeWithNotesLogsAndWork) {
    const auto unit = makeZooUnit("probe");
    std::atomic<int> notes{0};
    unit->setMIDIOutputEventBlock([&notes](auto, auto, auto, auto) {
        ++notes;
        return 0;
    });
    setControl(*unit, "chatter", 2.0F);
    setControl(*unit, "work", 1.0F);
    Blocks blocks(*unit);
    blocks.render(500);
    EXPECT_EQ(notes, 1500);
}

TEST(RealTime, RenderingIsRealTimeSafeDuringControlOperations) {
    const auto unit = makeZooUnit("probe");
    const auto presets = unit->factoryPresets();
    std::atomic<bool> isDone{false};
    Blocks blocks(*unit);
    std::thread control([&] {
        for (std::size_t round = 0; round < 100; ++round) {
            unit->setCurrentPreset(presets[round % presets.size()]);
            unit->setContextName("context " + std::to_string(round));
            unit->setMIDIOutputEventBlock([](auto, auto, auto, auto) { return 0; });
        }
        isDone = true;
    });
    do {
        blocks.render(1);
    } while (!isDone);
    control.join();
    EXPECT_EQ(probeRecord().controlCallsDuringRun, 0);
    EXPECT_EQ(probeRecord().overlappingJobs, 0);
}

TEST(RealTime, RenderingIsRealTimeSafeForHostilePlugins) {
    const auto flood = makeZooUnit("worker");
    const auto liar = makeZooUnit("liar");
    liar->setMIDIOutputEventBlock([](auto, auto, auto, auto) { return 0; });
    const auto numberless = makeZooUnit("numberless");
    Blocks(*numberless).render(20);
    Blocks floodBlocks(*flood);
    Blocks liarBlocks(*liar);
    for (int mode = 0; mode < 7; ++mode) {
        setControl(*liar, "mode", static_cast<float>(mode));
        liarBlocks.render(20);
        floodBlocks.render(20);
    }
}

TEST(RealTime, RenderingIsRealTimeSafeWithAnOpenPluginUI) {
    const auto unit = makeZooUnit("echo");
    const auto link = std::make_shared<LV2EventLink>(unit->data().ports);
    ASSERT_TRUE(link->setSubscribed(3, true));
    unit->connectPluginUI(link);
    const std::array<std::uint8_t, 3000> body{};
    Blocks blocks(*unit);
    std::uint32_t port = 0;
    int received = 0;
    // More events than fit into a quantum, then more than fit into the ring back.
    for (int round = 0; round < 400; ++round) {
        for (int count = 0; count < 3; ++count) {
            link->send(2, 1, sizeof(body), body.data());
        }
        blocks.render(1);
        while (round < 200 && link->receive(port) != nullptr) {
            ++received;
        }
    }
    EXPECT_EQ(received, 600);
    EXPECT_GT(link->takeLostCount(), 0U);
    unit->disconnectPluginUI(link);
}

}  // namespace
