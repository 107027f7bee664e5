// Measures the time of rendering a file through effects, in their services and in the program,
// against its parts alone and against other programs.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "bench/measuring/Child.h"
#include "bench/measuring/Clocks.h"
#include "bench/measuring/Music.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/ScratchFolder.h"
#include "bench/measuring/Stage.h"
#include "bench/measuring/Statistics.h"
#include "bench/offline/Floor.h"
#include "bench/offline/Rivals.h"

namespace {

using namespace orvalo::bench;

/// The times of one program.
class Contender {
  public:
    Contender(const char* name, Command command, Environment environment)
        : name_(name), command_(std::move(command)), environment_(std::move(environment)) {}

    /// Runs once to fill caches. A program that fails is left out.
    void warmUp() {
        try {
            Child(command_, environment_).awaitSuccess();
        } catch (const std::exception& error) {
            std::printf("  %s is left out: %s\n", name_, error.what());
            isLeftOut_ = true;
        }
    }
    void measure() {
        if (!isLeftOut_) {
            Child child(command_, environment_);
            processor_.push_back(child.awaitProcessorSeconds());
            wall_.push_back(inSeconds(monotonicNanoseconds() - child.beganAt()));
        }
    }
    const char* name() const { return name_; }
    bool isLeftOut() const { return isLeftOut_; }
    double processor() const { return median(processor_); }
    double wall() const { return median(wall_); }

  private:
    const char* name_;
    Command command_;
    Environment environment_;
    bool isLeftOut_ = false;
    std::vector<double> processor_;
    std::vector<double> wall_;
};

/// Measures the contenders in turn and prints their times, compared with the first one's. Returns
/// the first one's processor time; absent when it fails. beforeRound is called before each round.
std::optional<double> compare(
    std::vector<Contender> contenders, int rounds,
    const std::function<void()>& beforeRound = [] {}) {
    for (auto& contender : contenders) {
        contender.warmUp();
    }
    const auto& first = contenders.front();
    if (first.isLeftOut()) {
        return std::nullopt;
    }
    for (int round = 0; round < rounds; ++round) {
        beforeRound();
        for (auto& contender : contenders) {
            contender.measure();
        }
    }
    for (const auto& contender : contenders) {
        if (!contender.isLeftOut()) {
            std::printf("  %-20s %7.3f s  %.3f x   wall %7.3f s  %.3f x\n", contender.name(),
                        contender.processor(), contender.processor() / first.processor(),
                        contender.wall(), contender.wall() / first.wall());
        }
    }
    return first.processor();
}

void compareWithOrvalo(const std::filesystem::path& file, const Environment& environment,
                       int rounds) {
    const std::string uri = "urn:tessaly:orvalo";
    std::vector<double> decoding;
    std::vector<double> effect;
    std::vector<double> floor;
    std::printf("Orvalo, median of %d rounds:\n", rounds);
    const auto ours = compare({{"orvalo-play", playJob(file, uri, false), environment},
                               {"orvalo-play -i", playJob(file, uri, true), environment},
                               {"ffmpeg", ffmpegJob(file, uri), environment},
                               {"gst-launch-1.0", gstreamerJob(file), environment}},
                              rounds, [&] {
                                  const auto measured = measureFloor(file);
                                  decoding.push_back(measured.decoding);
                                  effect.push_back(measured.effect);
                                  floor.push_back(measured.sum());
                              });
    if (ours) {
        std::printf("  %-20s %7.3f s  %.3f x = decoding %.3f s + effect %.3f s\n", "floor",
                    median(floor), median(floor) / *ours, median(decoding), median(effect));
    }
}

void compareWithEffect(const std::filesystem::path& file, const Environment& environment,
                       int rounds, const std::string& uri) {
    std::printf("<%s>, median of %d rounds:\n", uri.c_str(), rounds);
    compare({{"orvalo-play", playJob(file, uri, false), environment},
             {"orvalo-play -i", playJob(file, uri, true), environment},
             {"ffmpeg", ffmpegJob(file, uri), environment}},
            rounds);
}

int run(const Options& options) {
    const ScratchFolder scratch;
    const int rounds = options.count("--rounds");
    std::filesystem::path file = options.text("--file");
    if (file.empty()) {
        file = scratch.path() / "music.m4a";
        makeMusic(file, 60 * options.count("--minutes"));
    }
    const Environment environment{{"LV2_PATH", lv2Path()},
                                  {"GST_REGISTRY", scratch.path() / "gst-registry"}};
    compareWithOrvalo(file, environment, rounds);
    std::istringstream uris(options.text("--effects"));
    for (std::string uri; uris >> uri;) {
        compareWithEffect(file, environment, rounds, uri);
    }
    return EXIT_SUCCESS;
}

/// From the packages x42-plugins, zam-plugins, dragonfly-reverb and lsp-plugins-lv2.
constexpr const char* kEffects =
    "http://gareus.org/oss/lv2/fil4#stereo urn:zamaudio:ZamCompX2 urn:dragonfly:room "
    "http://gareus.org/oss/lv2/darc#stereo http://lsp-plug.in/plugins/lv2/compressor_stereo";

}  // namespace

int main(int argc, char** argv) {
    const Options options(
        argc, argv,
        {{"--file", ""}, {"--minutes", "10"}, {"--rounds", "5"}, {"--effects", kEffects}});
    try {
        return run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvalo-bench-offline: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
