#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/audio/file/AVAudioFile.h"
#include "tests/programs/play/PlayFixture.h"

namespace orvalo::testing {

namespace {

using ::testing::IsEmpty;

class RenderTest : public PlayFixture {
  protected:
    std::string out = (folder.path() / "out.wav").string();

    static Signal read(const std::string& path) {
        const auto file = AVAudioFile::forReading(URL::fileURLWithPath(path));
        AVAudioPCMBuffer buffer(file->processingFormat(),
                                static_cast<std::uint32_t>(file->length()));
        file->read(buffer);
        Signal signal;
        for (std::uint32_t channel = 0; channel < buffer.format().channelCount; ++channel) {
            const float* samples = buffer.floatChannelData()[channel];
            signal.emplace_back(samples, samples + buffer.frameLength);
        }
        return signal;
    }
};

TEST_F(RenderTest, PassesHaveExactlyTheFilesLengthAndRate) {
    for (const std::uint32_t rate : {22050U, 44100U, 48000U, 96000U}) {
        const auto end =
            run({"--file", wav("music.wav", rate, 30011), "--render", out, "--passes", "3"});
        ASSERT_EQ(end.status, 0) << end.error;
        EXPECT_THAT(end.output, IsEmpty());
        const auto rendered = AVAudioFile::forReading(URL::fileURLWithPath(out));
        EXPECT_EQ(rendered->length(), 3 * 30011);
        EXPECT_EQ(rendered->processingFormat(), (AVAudioFormat{static_cast<double>(rate), 2}));
    }
}

TEST_F(RenderTest, ATransparentEffectRendersTheFileItself) {
    environment["LV2_PATH"] = standIn("http://lv2plug.in/plugins/eg-amp");
    const auto end =
        run({"--file", wav("music.wav", 44100, 30011, 1), "--render", out, "--passes", "2"});
    ASSERT_EQ(end.status, 0) << end.error;
    auto expected = noise(1, 30011, 1)[0];
    const auto pass = expected;
    expected.insert(expected.end(), pass.begin(), pass.end());
    EXPECT_EQ(read(out), (Signal{expected, expected}));
}

TEST_F(RenderTest, TheEffectsLatencyIsCut) {
    // This effect reports and applies a delay that depends on the sample rate.
    environment["LV2_PATH"] = standIn("http://gareus.org/oss/lv2/nodelay");
    const auto end = run({"--file", wav("music.wav", 48000, 30011, 1), "--render", out});
    ASSERT_EQ(end.status, 0) << end.error;
    EXPECT_EQ(read(out)[0], noise(1, 30011, 1)[0]);
}

TEST_F(RenderTest, SecondsLimitThePasses) {
    ASSERT_EQ(
        run({"--file", wav("music.wav", 48000, 30000), "--render", out, "--seconds", "1.5"}).status,
        0);
    EXPECT_EQ(read(out)[0].size(), 72000U);
    ASSERT_EQ(run({"--file", wav("music.wav", 48000, 30000), "--render", out, "--seconds", "1.5",
                   "--passes", "2"})
                  .status,
              0);
    EXPECT_EQ(read(out)[0].size(), 60000U);
}

TEST_F(RenderTest, AFailureKeepsTheOldFile) {
    std::ofstream(out) << "precious";
    useProgramWithoutEffect();
    const auto end = run({"--file", wav("music.wav", 48000, 100), "--render", out});
    EXPECT_EQ(end.status, 1);
    EXPECT_THAT(end.error, ::testing::HasSubstr("orvalo-play: No component matches "));
    std::string left;
    std::getline(std::ifstream(out) >> std::ws, left);
    EXPECT_EQ(left, "precious");
    EXPECT_FALSE(std::filesystem::exists(out + ".part"));
}

class LimitedRenderTest : public RenderTest {
  protected:
    /// Renders that file behind a shell's preparation. The error goes to standard output, because
    /// the limits apply to files. Expects that status and last line, and no file.
    void expectFailure(const std::string& file, const std::string& preparation, int status,
                       const std::string& line) {
        auto rendering = command({"--file", file, "--render", out});
        const std::vector<std::string> shell{"sh", "-c",
                                             preparation + " && exec \"$0\" \"$@\" 2>&1"};
        rendering.insert(rendering.begin(), shell.begin(), shell.end());
        Program limited(rendering, environment);
        const auto lines = limited.readAll();
        EXPECT_EQ(limited.wait(), status);
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines.back(), "orvalo-play: " + line);
        EXPECT_FALSE(std::filesystem::exists(out));
        EXPECT_FALSE(std::filesystem::exists(out + ".part"));
    }
};

TEST_F(LimitedRenderTest, ALimitOnTheSizeOfFilesIsNamed) {
    const auto file = wav("music.wav", 48000, 48000);
    for (const auto* blocks : {"0", "1", "100", "700"}) {
        expectFailure(file, std::string("ulimit -f ") + blocks, 2, out + ": File too large");
    }
}

TEST_F(LimitedRenderTest, ALimitThatTheEffectsMemoryExceedsIsNamed) {
    expectFailure(wav("music.wav", 48000, 100), "ulimit -f 16", 1,
                  "The plug-in <urn:tessaly:orvalo> cannot be used: The memory shared with an "
                  "effect: File too large.");
}

TEST_F(LimitedRenderTest, AFullDiskIsNamed) {
    const auto file = wav("music.wav", 48000, 48000);
    const auto disk = folder.path() / "disk";
    std::filesystem::create_directories(disk);
    out = (disk / "out.wav").string();
    // In a mount namespace, which needs a user namespace when the test is not root's.
    auto rendering = command({"--file", file, "--render", out});
    const std::vector<std::string> shell{"unshare", geteuid() == 0 ? "-m" : "-mr", "sh", "-c",
                                         "mount -t tmpfs -o size=100k none '" + disk.string() +
                                             "' && \"$0\" \"$@\" 2>&1; echo status $?; ls -A '" +
                                             disk.string() + "'"};
    rendering.insert(rendering.begin(), shell.begin(), shell.end());
    Program limited(rendering, environment);
    const auto lines = limited.readAll();
    EXPECT_EQ(limited.wait(), 0);
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], "orvalo-play: " + out + ": No space left on device");
    EXPECT_EQ(lines.back(), "status 2");
}

}  // namespace

}  // namespace orvalo::testing
