#include "bench/measuring/Music.h"

#include <fstream>
#include <string>

#include "bench/measuring/Child.h"
#include "bench/measuring/Stage.h"

namespace orvalo::bench {

namespace {

constexpr int kDemonstrationFiles = 80;

/// A decaying chord and a burst of noise in each half second.
constexpr auto kSynthetic =
    "aevalsrc=c=stereo:s=48000:exprs="
    "'exp(-4*mod(t\\,0.5))*(0.2*sin(2*PI*220*t)+0.2*sin(2*PI*277*t)+0.1*sin(2*PI*1320*t))"
    "+0.3*exp(-30*mod(t\\,0.5))*(2*random(0)-1)"
    "|exp(-5*mod(t\\,0.5))*(0.2*sin(2*PI*220*t)+0.2*sin(2*PI*330*t)+0.1*sin(2*PI*1760*t))"
    "+0.3*exp(-30*mod(t\\,0.5))*(2*random(1)-1)'";

/// FFmpeg's list of the demonstration files; empty if there are none.
std::string playlist() {
    std::string list;
    for (int number = 1; number <= kDemonstrationFiles; ++number) {
        const auto piece = stage() / "share/orvalo" / (std::to_string(number) + ".m4a");
        if (std::filesystem::exists(piece)) {
            list += "file '" + piece.string() + "'\n";
        }
    }
    return list;
}

}  // namespace

void makeMusic(const std::filesystem::path& file, int seconds) {
    Command command{"ffmpeg", "-nostdin", "-y"};
    const auto list = playlist();
    const auto listFile = file.parent_path() / "playlist.txt";
    if (list.empty()) {
        command.insert(command.end(), {"-f", "lavfi", "-i", kSynthetic});
    } else {
        std::ofstream(listFile) << list;
        command.insert(command.end(), {"-stream_loop", "-1", "-f", "concat", "-safe", "0", "-i",
                                       listFile.string()});
    }
    // The lengths in the list are rounded; renumber the samples so that there are no gaps.
    command.insert(command.end(),
                   {"-t", std::to_string(seconds), "-af", "asetpts=N/SR/TB", "-ar", "48000", "-ac",
                    "2", "-c:a", "aac", "-b:a", "160k", file.string()});
    Child(command).awaitSuccess();
}

}  // namespace orvalo::bench
