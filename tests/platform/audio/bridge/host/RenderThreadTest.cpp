// With the guard that ends the program at the first call that is forbidden on a render thread.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <csignal>
#include <thread>

#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

/// Blocks whose memory is allocated beforehand.
class Blocks {
  public:
    explicit Blocks(BridgedRender& render) : render_(render) {}

    void render(int count) {
        for (int block = 0; block < count; ++block) {
            render_.render({inputs_.data(), 2, kFrames}, {outputs_.data(), 2, kFrames});
        }
    }

  private:
    static constexpr std::uint32_t kFrames = 64;
    using Channel = std::array<float, kFrames>;

    BridgedRender& render_;
    std::array<Channel, 4> samples_{};
    std::array<float*, 2> inputs_{samples_[0].data(), samples_[1].data()};
    std::array<float*, 2> outputs_{samples_[2].data(), samples_[3].data()};
};

void setQuietBlock(FakeEffect& effect, std::atomic<int>& count) {
    effect.midiBlock().exchange(
        std::make_unique<AUMIDIOutputEventBlock>([&count](auto, auto, auto, auto) {
            ++count;
            return 0;
        }));
}

TEST(RenderThread, MakesNoForbiddenCallWithEventsAndLateAnswers) {
    BridgeLimits limits;
    FakeEffect effect("late:50", limits);
    std::atomic<int> events{0};
    setQuietBlock(effect, events);
    effect.bridgedRender().setOffline(false);
    Blocks blocks(effect.bridgedRender());
    while (events < 500) {
        blocks.render(1);
    }
    EXPECT_GT(effect.bridgedRender().lateQuantumCount(), 0U);
}

TEST(RenderThread, MakesNoForbiddenCallWhileServicesDieAndTheEffectIsControlled) {
    auto limits = patientLimits();
    limits.deaths = 1000;
    FakeEffect effect("half:0", limits);
    std::atomic<int> events{0};
    std::atomic<bool> isDone{false};
    setQuietBlock(effect, events);
    Blocks blocks(effect.bridgedRender());
    std::thread control([&] {
        for (int round = 0; round < 30; ++round) {
            for (const auto child : services()) {
                kill(child, SIGKILL);
            }
            effect.supervisor().perform(bridge::SetContextName{.number = 0, .name = "n"});
            setQuietBlock(effect, events);
        }
        isDone = true;
    });
    while (!isDone) {
        blocks.render(1);
    }
    control.join();
    EXPECT_GT(events, 0);
}

}  // namespace
