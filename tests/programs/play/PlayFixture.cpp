#include "tests/programs/play/PlayFixture.h"

#include <filesystem>
#include <fstream>

namespace orvalo::testing {

PlayFixture::End PlayFixture::run(std::vector<std::string> arguments) {
    Program playing(command(std::move(arguments)), environment);
    End end;
    end.output = playing.readAll();
    end.status = playing.wait();
    end.error = playing.standardError();
    return end;
}

std::vector<std::string> PlayFixture::command(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), program);
    return arguments;
}

std::string PlayFixture::wav(const std::string& name, std::uint32_t rate, std::size_t frames,
                             std::uint32_t channels) {
    const auto path = folder.path() / name;
    writeWav(path, rate, noise(channels, frames, 1));
    return path.string();
}

std::string PlayFixture::standIn(const std::string& plugin, const std::string& others) {
    const auto bundle = folder.path() / "lv2" / "stand-in.lv2";
    std::filesystem::create_directories(bundle);
    std::ofstream(bundle / "manifest.ttl")
        << "@prefix ac: <urn:tessaly:audio-component#> .\n<" << plugin
        << "> ac:type \"aumf\" ; ac:subtype \"orVL\" ; ac:manufacturer \"TSLY\" ; "
           "ac:flags 2 ; ac:name \"Stand-in\" .\n";
    return bundle.parent_path().string() + ":" + others;
}

void PlayFixture::useProgramWithoutEffect() {
    program = (folder.path() / "bin" / "orvalo-play").string();
    std::filesystem::create_directories(folder.path() / "bin");
    std::filesystem::copy_file(staged("orvalo-play"), program);
    std::filesystem::create_directories(folder.path() / "lib");
    std::filesystem::create_directory_symlink(ORVALO_STAGE "/lib/orvalo",
                                              folder.path() / "lib" / "orvalo");
}

}  // namespace orvalo::testing
