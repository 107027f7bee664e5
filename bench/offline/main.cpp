// Measures the processor time of rendering a file through the effect, against its parts alone and
// against other programs.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>

#include "bench/measuring/Child.h"
#include "bench/measuring/Music.h"
#include "bench/measuring/Options.h"
#include "bench/measuring/ScratchFolder.h"
#include "bench/measuring/Stage.h"
#include "bench/measuring/Statistics.h"
#include "bench/offline/Floor.h"
#include "bench/offline/Rivals.h"

namespace {

using namespace orvalo::bench;

/// The processor times of one program.
class Contender {
  public:
    Contender(const char* name, Command command, Environment environment)
        : name_(name), command_(std::move(command)), environment_(std::move(environment)) {}

    /// Runs once to fill caches. A program that fails is left out.
    void warmUp() {
        try {
            Child(command_, environment_).awaitProcessorSeconds();
        } catch (const std::exception& error) {
            std::printf("%s is left out: %s\n", name_, error.what());
            isLeftOut_ = true;
        }
    }
    void measure() {
        if (!isLeftOut_) {
            seconds_.push_back(Child(command_, environment_).awaitProcessorSeconds());
        }
    }
    const char* name() const { return name_; }
    std::optional<double> result() const {
        return seconds_.empty() ? std::nullopt : std::optional(median(seconds_));
    }

  private:
    const char* name_;
    Command command_;
    Environment environment_;
    bool isLeftOut_ = false;
    std::vector<double> seconds_;
};

int run(const Options& options) {
    const ScratchFolder scratch;
    std::filesystem::path file = options.text("--file");
    if (file.empty()) {
        file = scratch.path() / "music.m4a";
        makeMusic(file, 60 * options.count("--minutes"));
    }
    const Environment environment{{"LV2_PATH", lv2Path()}};
    const Environment gstreamerEnvironment{{"LV2_PATH", makeEffectForGStreamer(scratch.path())},
                                           {"GST_REGISTRY", scratch.path() / "gst-registry"}};
    Contender play("orvalo-play", playJob(file), environment);
    Contender ffmpeg("ffmpeg", ffmpegJob(file), environment);
    Contender gstreamer("gst-launch-1.0", gstreamerJob(file), gstreamerEnvironment);
    std::vector<double> decoding;
    std::vector<double> effect;
    std::vector<double> floor;
    for (auto* contender : {&play, &ffmpeg, &gstreamer}) {
        contender->warmUp();
    }
    for (int round = 0; round < options.count("--rounds"); ++round) {
        const auto measured = measureFloor(file);
        decoding.push_back(measured.decoding);
        effect.push_back(measured.effect);
        floor.push_back(measured.sum());
        for (auto* contender : {&play, &ffmpeg, &gstreamer}) {
            contender->measure();
        }
    }

    const auto ours = play.result();
    if (!ours) {
        return EXIT_FAILURE;
    }
    std::printf("Processor time, median of %d rounds:\n", options.count("--rounds"));
    std::printf("  %-15s %7.3f s = decoding %.3f s + effect %.3f s\n", "floor", median(floor),
                median(decoding), median(effect));
    std::printf("  %-15s %7.3f s   %.3f x the floor\n", play.name(), *ours, *ours / median(floor));
    for (const auto* rival : {&ffmpeg, &gstreamer}) {
        if (const auto theirs = rival->result()) {
            std::printf("  %-15s %7.3f s   %.3f x orvalo-play\n", rival->name(), *theirs,
                        *theirs / *ours);
        }
    }
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    const Options options(argc, argv, {{"--file", ""}, {"--minutes", "10"}, {"--rounds", "5"}});
    try {
        return run(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvalo-bench-offline: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
