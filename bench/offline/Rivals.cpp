#include "bench/offline/Rivals.h"

#include <regex>

#include "bench/measuring/Stage.h"

namespace orvalo::bench {

Command ffmpegJob(const std::filesystem::path& file, const std::string& uri) {
    // A colon would end the option, for each of two parsers.
    const auto escaped = std::regex_replace(uri, std::regex(":"), R"(\\:)");
    return {"ffmpeg", "-nostdin",         "-y",   "-threads",  "1",  "-i",  file,
            "-af",    "lv2=p=" + escaped, "-c:a", "pcm_f32le", "-f", "wav", "/dev/null"};
}

Command gstreamerJob(const std::filesystem::path& file) {
    // The effect's element takes interleaved floats and ignores the defaults of switches.
    return {"gst-launch-1.0",
            "-q",
            "filesrc",
            "location=" + file.string(),
            "!",
            "qtdemux",
            "!",
            "avdec_aac",
            "!",
            "audioconvert",
            "!",
            "urn-tessaly-orvalo",
            "enabled=true",
            "!",
            "audioconvert",
            "!",
            "audio/x-raw,format=F32LE",
            "!",
            "wavenc",
            "!",
            "filesink",
            "location=/dev/null"};
}

Command playJob(const std::filesystem::path& file, const std::string& uri, bool isInProcess) {
    Command command{playProgram(), "--effect", uri, "--file", file, "--render", "/dev/null"};
    if (isInProcess) {
        command.emplace_back("--in-process");
    }
    return command;
}

}  // namespace orvalo::bench
