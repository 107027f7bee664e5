#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "tests/platform/audio/engine/EngineFixture.h"

namespace orvalo::testing {

namespace {

class LoopSeamTest : public EngineFixture {
  protected:
    /// A file of noise, encoded by the ffmpeg program.
    std::filesystem::path coded(const std::string& extension, std::uint32_t rate,
                                std::uint32_t channels, std::size_t frames) {
        const auto source = wav("source.wav", rate, noise(channels, frames, rate + channels));
        auto target = folder.path() / ("coded." + extension);
        const auto command =
            "ffmpeg -v error -y -i '" + source.string() + "' '" + target.string() + "' </dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return target;
    }
};

/// Renders three passes: each has the stated length and is bit-identical to the first.
TEST_F(LoopSeamTest, PassesOfCodedFilesHaveTheirStatedLengthAndAreAlike) {
    struct Case {
        const char* extension;
        std::uint32_t rate;
        std::uint32_t channels;
        std::size_t frames;
    };
    // Lengths with and without whole milliseconds and whole coder frames.
    for (const auto& [extension, rate, channels, frames] :
         {Case{"m4a", 22050, 1, 22050}, Case{"m4a", 22050, 2, 30011}, Case{"m4a", 44100, 1, 30011},
          Case{"m4a", 44100, 2, 44100}, Case{"m4a", 48000, 1, 30720}, Case{"m4a", 48000, 2, 30011},
          Case{"m4a", 96000, 1, 96000}, Case{"m4a", 96000, 2, 30011}, Case{"flac", 48000, 2, 30011},
          Case{"ogg", 44100, 2, 30011}, Case{"mp3", 44100, 2, 30011}}) {
        SCOPED_TRACE(std::string(extension) + ", " + std::to_string(rate) + " Hz, " +
                     std::to_string(channels) + " channels, " + std::to_string(frames) + " frames");
        const auto file = open(coded(extension, rate, channels, frames));
        ASSERT_EQ(file->length(), static_cast<std::int64_t>(frames));
        start({static_cast<double>(rate), channels});
        for (int count = 0; count < 3; ++count) {
            player->scheduleFile(file, {}, {});
        }
        engine->connect(player, engine->mainMixerNode(), {});
        player->play();
        const auto rendered = render(3 * frames);
        const auto first = part(rendered, 0, frames);
        EXPECT_EQ(part(rendered, frames, frames), first);
        EXPECT_EQ(part(rendered, 2 * frames, frames), first);
        EXPECT_NE(first, silence(channels, frames));
        EXPECT_EQ(render(frames), silence(channels, frames));
        reset();
    }
}

}  // namespace

}  // namespace orvalo::testing
