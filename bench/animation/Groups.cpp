// Measures the cost of stepping the members of a stack and of a sequencer, for several counts.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include "animation/AnimationSequencer.h"
#include "animation/Animator.h"
#include "animation/AnimatorStack.h"
#include "bench/measuring/Clocks.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/Statistics.h"

namespace {

using namespace orvalo;
using Members = std::vector<std::shared_ptr<Animator>>;

constexpr std::int64_t kEndlessFrames = 1'000'000'000;

Members make(int count) {
    Members result(static_cast<std::size_t>(count));
    std::generate(result.begin(), result.end(), [] { return std::make_shared<Animator>(); });
    return result;
}

void setup(const Members& members, std::int64_t frames) {
    for (const auto& member : members) {
        member->setup(0.0F, 1.0F, frames, 0.005F, EnumEasing::EASING_easeInOutCubic);
    }
}

/// Duration of the work in nanoseconds.
double timeOf(const std::function<void()>& work) {
    const auto start = bench::monotonicNanoseconds();
    work();
    return static_cast<double>(bench::monotonicNanoseconds() - start);
}

struct StackWay {
    static constexpr auto name = "stack";
    explicit StackWay(Members all) : members(std::move(all)) {}

    void begin(std::int64_t frames) {
        setup(members, frames);
        group->stop();
        for (const auto& member : members) {
            group->add(member);
        }
    }
    std::int64_t left() const { return group->getCount(); }

    Members members;
    std::shared_ptr<AnimatorStack> group = std::make_shared<AnimatorStack>();
};

struct SequencerWay {
    static constexpr auto name = "sequencer";
    explicit SequencerWay(Members all) : members(std::move(all)) {
        for (const auto& member : members) {
            group->add(member, 0);
        }
        // With an end so late that the sequencer never stops.
        group->add(last, kEndlessFrames);
    }

    void begin(std::int64_t frames) {
        group->seek(0);
        setup(members, frames);
    }
    std::int64_t left() const { return group->getCurrentCount(); }

    Members members;
    std::shared_ptr<Animator> last = std::make_shared<Animator>(0.0F, 1.0F, 1);
    std::shared_ptr<AnimationSequencer> group = std::make_shared<AnimationSequencer>();
};

/// The cost per member in ns. on: of a step while no member ends; endingTogether: of a tick on
/// which all members end and are removed.
struct Costs {
    double on;
    double endingTogether;
};

template <typename Way>
Costs measure(int members, int rounds, int steps) {
    Way way(make(members));
    const int ticks = std::max(1, steps / members);
    std::vector<double> on;
    std::vector<double> ending;
    for (int round = 0; round < rounds; ++round) {
        way.begin(kEndlessFrames);
        way.group->animate();
        const auto time = timeOf([&] {
            for (int tick = 0; tick < ticks; ++tick) {
                way.group->animate();
            }
        });
        on.push_back(time / ticks / members);

        double endings = 0;
        for (int tick = 0; tick < ticks; ++tick) {
            way.begin(1);
            way.group->animate();
            endings += timeOf([&way] { way.group->animate(); });
            if (way.left() != 0) {
                std::fprintf(stderr, "%s: not all members have ended.\n", Way::name);
            }
        }
        ending.push_back(endings / ticks / members);
    }
    return {bench::median(on), bench::median(ending)};
}

template <typename Way>
void report(int rounds, int steps) {
    constexpr double nanosecondsInMillisecond = 1e6;
    Costs few{};
    for (const int members : {1, 100, 10'000}) {
        const auto costs = measure<Way>(members, rounds, steps);
        if (members == 100) {
            few = costs;
        }
        std::printf(
            "%-10s %6d members: %8.1f ns a step, %8.0f steps a ms;"
            " all end on one tick: %8.1f ns a member",
            Way::name, members, costs.on, nanosecondsInMillisecond / costs.on,
            costs.endingTogether);
        if (members > 100) {
            std::printf("; %.2f and %.2f x the cost with 100", costs.on / few.on,
                        costs.endingTogether / few.endingTogether);
        }
        std::printf("\n");
    }
}

}  // namespace

int main(int argc, char** argv) {
    const bench::Options options(argc, argv, {{"--rounds", "9"}, {"--steps", "1000000"}});
    const int rounds = options.count("--rounds");
    const int steps = options.count("--steps");
    report<StackWay>(rounds, steps);
    report<SequencerWay>(rounds, steps);
    return 0;
}
