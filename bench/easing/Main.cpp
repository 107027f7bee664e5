// What one evaluation of each easing curve costs, against Qt's curve of the same name.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include "animation/EasingCurve.h"
#include "animation/EasingName.h"
#include "bench/easing/QtCurves.h"
#include "bench/measuring/Clocks.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/Statistics.h"

namespace {

using namespace orvalo;
using namespace orvalo::bench;

constexpr std::int64_t length = 240;
constexpr std::size_t evaluations = 4096;

/// Frames of a run and the share of the way at each.
struct Frames {
    std::vector<std::int64_t> frames;
    std::vector<double> shares;

    explicit Frames(std::vector<std::int64_t> some) : frames(std::move(some)) {
        for (const auto frame : frames) {
            shares.push_back(static_cast<double>(frame) / length);
        }
    }
};

/// Run after run, as an animator takes the frames: a curve's branches are easy to foresee.
Frames framesInOrder() {
    std::vector<std::int64_t> frames;
    for (std::size_t number = 0; number < evaluations; ++number) {
        frames.push_back(static_cast<std::int64_t>(number) % (length + 1));
    }
    return Frames(frames);
}

/// The same frames as many animators take them that are anywhere in their runs.
Frames shuffledFrames() {
    auto frames = framesInOrder().frames;
    std::shuffle(frames.begin(), frames.end(), std::minstd_rand(1));
    return Frames(frames);
}

template <typename Work>
double nanosecondsEach(const Work& work) {
    const auto begin = threadNanoseconds();
    work();
    asm volatile("" : : : "memory");  // Results that nobody reads are computed nevertheless.
    return static_cast<double>(threadNanoseconds() - begin) / evaluations;
}

/// One curve, Qt's of the same name, and what each round took.
class Contest {
  public:
    Contest(std::size_t number, const Frames& frames)
        : frames_(frames), ours_(easingCurves.at(number)), qts_(qtCurve(number)) {}

    void hold() {
        ourTimes_.push_back(nanosecondsEach([this] {
            const auto curve = ours_;
            std::transform(frames_.frames.begin(), frames_.frames.end(), ourValues_.begin(),
                           [curve](std::int64_t frame) { return curve(frame, 0, 1, length); });
        }));
        if (qts_) {
            qtTimes_.push_back(nanosecondsEach([this] { (*qts_)(frames_.shares, qtValues_); }));
        }
    }

    void print() const {
        std::printf("%10.2f", median(ourTimes_));
        if (qts_) {
            std::printf("%10.2f%10.2f", median(qtTimes_), ratio());
        }
    }

    /// Qt's time in parts of ours.
    double ratio() const { return median(qtTimes_) / median(ourTimes_); }

  private:
    const Frames& frames_;
    EasingCurve ours_;
    std::optional<QtCurve> qts_;
    std::vector<float> ourValues_ = std::vector<float>(evaluations);
    std::vector<double> qtValues_ = std::vector<double>(evaluations);
    std::vector<double> ourTimes_;
    std::vector<double> qtTimes_;
};

using Contests = std::vector<Contest>;

Contests contestsOver(const Frames& frames) {
    Contests contests;
    for (std::size_t number = 0; number < easingCount; ++number) {
        contests.emplace_back(number, frames);
    }
    return contests;
}

void printCurves(const Contests& inOrder, const Contests& shuffled) {
    for (std::size_t number = 0; number < easingCount; ++number) {
        std::printf("%-18s", easingName(static_cast<EnumEasing>(number)).c_str());
        inOrder[number].print();
        shuffled[number].print();
        std::printf("\n");
    }
}

/// The least of the ratios of a family's four curves, or of easeNone's one.
double leastRatio(const Contests& contests, std::size_t first) {
    double least = contests[first].ratio();
    for (std::size_t other = first + 1; first > 0 && other < first + 4; ++other) {
        least = std::min(least, contests[other].ratio());
    }
    return least;
}

void printFamilies(const Contests& inOrder, const Contests& shuffled) {
    std::printf("\nQt / ours, the least in each family\n");
    for (std::size_t first = 0; first < easingCount; first += first == 0 ? 1 : 4) {
        std::printf("%-18s%30.2f%30.2f\n", easingName(static_cast<EnumEasing>(first)).c_str(),
                    leastRatio(inOrder, first), leastRatio(shuffled, first));
    }
}

}  // namespace

int main(int argc, char** argv) {
    const Options options(argc, argv, {{"--rounds", "200"}});
    const int rounds = options.count("--rounds");
    const auto runs = framesInOrder();
    const auto mixed = shuffledFrames();
    auto inOrder = contestsOver(runs);
    auto shuffled = contestsOver(mixed);
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t number = 0; number < easingCount; ++number) {
            inOrder[number].hold();
            shuffled[number].hold();
        }
    }
    const bool hasQt = qtCurve(0).has_value();
    const char* const columns = hasQt ? "      ours        Qt Qt / ours" : "      ours";
    std::printf(
        "ns an evaluation, medians of %d rounds: frames in order, then shuffled\n%-18s%s%s\n",
        rounds, "", columns, columns);
    printCurves(inOrder, shuffled);
    if (hasQt) {
        printFamilies(inOrder, shuffled);
    }
    return 0;
}
