#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <thread>

#include "tests/platform/audio/file/AudioFixtures.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

constexpr std::size_t kFrames = 150001;

Channels part(const Channels& all, std::size_t from, std::size_t count) {
    Channels result;
    for (const auto& channel : all) {
        const auto start = channel.begin() + static_cast<std::ptrdiff_t>(from);
        result.emplace_back(start, start + static_cast<std::ptrdiff_t>(count));
    }
    return result;
}

Channels readSome(AVAudioFile& file, std::uint32_t frames) {
    AVAudioPCMBuffer buffer(file.processingFormat(), frames);
    file.read(buffer);
    Channels result;
    for (std::size_t channel = 0; channel < file.processingFormat().channelCount; ++channel) {
        const float* samples = buffer.floatChannelData()[channel];
        result.emplace_back(samples, samples + buffer.frameLength);
    }
    return result;
}

class FramePositionTest : public ::testing::TestWithParam<const char*> {
  protected:
    FramePositionTest() : path_(folder_.path() / GetParam()) {
        // At this bit rate AAC stores noise as a seed for the decoder's noise.
        writeEncoded(path_, noise(2, kFrames), 44100.0,
                     path_.extension() == ".m4a" ? std::vector<std::string>{"-b:a", "64k"}
                                                 : std::vector<std::string>{});
    }

    const TemporaryFolder folder_;
    const std::filesystem::path path_;
};

TEST_P(FramePositionTest, ReadsTheSameAtEveryPositionAsAStraightRead) {
    const auto straight = readOn(*open(path_));
    ASSERT_EQ(straight.front().size(), kFrames);
    const auto file = open(path_);
    for (const std::size_t place : {100000U, 0U, 1U, 1023U, 149000U, 99999U, 3U, 140000U, 0U}) {
        SCOPED_TRACE(place);
        file->setFramePosition(static_cast<std::int64_t>(place));
        EXPECT_EQ(file->framePosition(), static_cast<std::int64_t>(place));
        const auto count = std::min<std::size_t>(3000, kFrames - place);
        EXPECT_TRUE(readSome(*file, 3000) == part(straight, place, count));
        EXPECT_EQ(file->framePosition(), static_cast<std::int64_t>(place + count));
    }
}

TEST_P(FramePositionTest, ClampsPositionsToTheFile) {
    const auto file = open(path_);
    file->setFramePosition(-5);
    EXPECT_EQ(file->framePosition(), 0);
    file->setFramePosition(INT64_MAX);
    EXPECT_EQ(file->framePosition(), static_cast<std::int64_t>(kFrames));
    EXPECT_EQ(readSome(*file, 10).front().size(), 0U);
}

TEST_P(FramePositionTest, TwoFilesOfOnePathAreIndependent) {
    const auto straight = readOn(*open(path_));
    std::array<Channels, 2> heard;
    {
        std::jthread one([&] { heard[0] = readOn(*open(path_), 512); });
        std::jthread other([&] { heard[1] = readOn(*open(path_), 3333); });
    }
    EXPECT_TRUE(heard[0] == straight);
    EXPECT_TRUE(heard[1] == straight);
}

INSTANTIATE_TEST_SUITE_P(Kinds, FramePositionTest,
                         ::testing::Values("a.m4a", "a.wav", "a.flac", "a.mp3", "a.ogg"));

}  // namespace
}  // namespace orvalo::testing
