#include "bench/offline/Rivals.h"

#include <fstream>
#include <regex>
#include <sstream>

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

std::string makeEffectForGStreamer(const std::filesystem::path& folder) {
    const auto original = stage() / "lib/lv2/orvalo.lv2";
    const auto bundle = folder / "gstreamer/orvalo.lv2";
    std::filesystem::create_directories(bundle);
    std::filesystem::copy(original, bundle);
    std::ostringstream data;
    data << std::ifstream(original / "orvalo.ttl").rdbuf();
    const std::regex groupOfParameters("pg:group orvalo:(?!input|output)[a-z_]+( ;)?");
    // GStreamer takes one group of inputs. The effect does not read its side-chain by default.
    const std::regex sideChain("lv2:AudioPort( ;\\s+lv2:index 3[12] )");
    const auto withoutGroups = std::regex_replace(data.str(), groupOfParameters, "");
    std::ofstream(bundle / "orvalo.ttl")
        << std::regex_replace(withoutGroups, sideChain, "lv2:ControlPort$1");
    return bundle.parent_path().string() + ":/usr/lib/lv2";
}

std::string registerEffect(const std::filesystem::path& folder, const std::string& uri) {
    const auto bundle = folder / "registered/effect.lv2";
    std::filesystem::create_directories(bundle);
    std::ofstream(bundle / "manifest.ttl")
        << "@prefix ac: <urn:tessaly:audio-component#> .\n<" << uri
        << "> ac:type \"aumf\" ; ac:subtype \"orVL\" ; ac:manufacturer \"TSLY\" ; ac:flags 2 ;\n"
           "    ac:name \"Benchmark\" .\n";
    return bundle.parent_path().string() + ":" + lv2Path();
}

Command playJob(const std::filesystem::path& file, bool isInProcess) {
    Command command{playProgram(), "--file", file, "--render", "/dev/null"};
    if (isInProcess) {
        command.emplace_back("--in-process");
    }
    return command;
}

}  // namespace orvalo::bench
