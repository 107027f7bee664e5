#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "tests/platform/audio/file/AudioFixtures.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

// Frame counts of whole milliseconds, and an odd one.
constexpr std::size_t kRound = 70560;
constexpr std::size_t kOdd = 70573;

using Case = std::tuple<double, std::size_t, std::size_t>;

class ExactLengthTest : public ::testing::TestWithParam<Case> {
  protected:
    // Expects the original's frames in their places, pass after pass.
    void expectExact(const std::string& name, const std::vector<std::string>& arguments,
                     double least) {
        SCOPED_TRACE(name);
        const auto [rate, channels, frames] = GetParam();
        const auto original = risingSines(rate, channels, frames);
        const auto path = folder_.path() / name;
        writeEncoded(path, original, rate, arguments);

        const CapturedOutput errors(2);
        const auto file = open(path);
        EXPECT_EQ(file->length(), static_cast<std::int64_t>(frames));
        EXPECT_EQ(file->processingFormat(),
                  (AVAudioFormat{rate, static_cast<std::uint32_t>(channels)}));
        const auto first = readOn(*file);
        ASSERT_EQ(first.front().size(), frames);
        EXPECT_EQ(file->framePosition(), file->length());
        for (const std::uint32_t bufferFrames : {777U, 65536U}) {
            file->setFramePosition(0);
            EXPECT_TRUE(readOn(*file, bufferFrames) == first);
        }
        EXPECT_EQ(errors.text(), "");

        const std::size_t end = 2000;
        EXPECT_EQ(bestLag(original, first, 0, end), 0);
        EXPECT_EQ(bestLag(original, first, frames - end, frames), 0);
        EXPECT_GT(agreement(original, first, 0, frames), least);
        EXPECT_GT(agreement(original, first, 0, 256), least / 2);
        EXPECT_GT(agreement(original, first, frames - 256, frames), least / 2);
    }

  private:
    TemporaryFolder folder_;
};

TEST_P(ExactLengthTest, AacInMp4KeepsEveryFrame) {
    expectExact("a.m4a", {"-b:a", "192k"}, 25.0);
}

TEST_P(ExactLengthTest, AacInMp4WithItsHeaderInFrontKeepsEveryFrame) {
    expectExact("a.m4a", {"-b:a", "192k", "-movflags", "+faststart"}, 25.0);
}

TEST_P(ExactLengthTest, VorbisKeepsEveryFrame) {
    expectExact("a.ogg", {"-c:a", "libvorbis", "-q:a", "6"}, 15.0);
}

TEST_P(ExactLengthTest, LosslessFormatsKeepEveryFrame) {
    expectExact("a.wav", {"-c:a", "pcm_s24le"}, 75.0);
    expectExact("a.flac", {}, 75.0);
    expectExact("lossless.m4a", {"-c:a", "alac"}, 75.0);
}

INSTANTIATE_TEST_SUITE_P(RatesChannelsAndLengths, ExactLengthTest,
                         ::testing::Values(Case{22050.0, 2, kRound}, Case{22050.0, 1, kOdd},
                                           Case{44100.0, 1, kRound}, Case{44100.0, 2, kOdd},
                                           Case{48000.0, 2, kRound}, Case{48000.0, 1, kOdd},
                                           Case{96000.0, 1, kRound}, Case{96000.0, 2, kOdd}));

// The highest rate of MP3 is 48 kHz.
using ExactMp3LengthTest = ExactLengthTest;

TEST_P(ExactMp3LengthTest, Mp3KeepsEveryFrame) {
    expectExact("a.mp3", {"-b:a", "128k"}, 15.0);
}

INSTANTIATE_TEST_SUITE_P(RatesChannelsAndLengths, ExactMp3LengthTest,
                         ::testing::Values(Case{22050.0, 2, kRound}, Case{22050.0, 1, kOdd},
                                           Case{44100.0, 1, kRound}, Case{44100.0, 2, kOdd},
                                           Case{48000.0, 2, kRound}, Case{48000.0, 1, kOdd}));

// Opus always decodes to 48 kHz.
using ExactOpusLengthTest = ExactLengthTest;

TEST_P(ExactOpusLengthTest, OpusKeepsEveryFrame) {
    expectExact("a.opus", {"-c:a", "libopus", "-b:a", "160k"}, 15.0);
}

INSTANTIATE_TEST_SUITE_P(ChannelsAndLengths, ExactOpusLengthTest,
                         ::testing::Values(Case{48000.0, 2, kRound}, Case{48000.0, 1, kOdd}));

TEST(ExactShortFileTest, FilesOfAFewFramesAreExact) {
    const TemporaryFolder folder;
    for (const std::size_t frames : {1U, 5U, 1024U, 1025U}) {
        for (const auto* name : {"a.m4a", "a.flac", "a.ogg", "a.wav"}) {
            SCOPED_TRACE(name);
            const auto path = folder.path() / name;
            writeEncoded(path, risingSines(44100.0, 2, frames), 44100.0);
            const auto file = open(path);
            EXPECT_EQ(file->length(), static_cast<std::int64_t>(frames));
            EXPECT_EQ(readOn(*file).front().size(), frames);
        }
    }
}

}  // namespace
}  // namespace orvalo::testing
