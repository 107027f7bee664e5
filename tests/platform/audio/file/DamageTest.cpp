#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/platform/audio/file/AudioFixtures.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

constexpr std::size_t kFrames = 600000;

class DamageTest : public ::testing::TestWithParam<const char*> {
  protected:
    DamageTest() : path_(folder_.path() / GetParam()) {
        writeEncoded(path_, risingSines(44100.0, 2, kFrames), 44100.0);
        whole_ = readOn(*open(path_));
    }

    static bool isSilent(const Channels& heard, std::size_t from, std::size_t to) {
        return std::ranges::all_of(heard, [&](const auto& channel) {
            return std::all_of(channel.begin() + static_cast<std::ptrdiff_t>(from),
                               channel.begin() + static_cast<std::ptrdiff_t>(to),
                               [](float sample) { return sample == 0.0F; });
        });
    }

    void expectOneWarning(const CapturedOutput& errors) const {
        std::vector<std::string> warnings;
        std::ranges::copy_if(errors.lines(), std::back_inserter(warnings),
                             [](const auto& line) { return !line.empty(); });
        ASSERT_EQ(warnings.size(), 1U) << errors.text();
        EXPECT_NE(warnings[0].find(path_.string() + ": damaged near "), std::string::npos)
            << warnings[0];
        EXPECT_NE(warnings[0].find(" seconds; silence stands for what cannot be decoded."),
                  std::string::npos)
            << warnings[0];
    }

    const TemporaryFolder folder_;
    const std::filesystem::path path_;
    Channels whole_;
};

TEST_P(DamageTest, DamageInTheMiddleKeepsTheLengthAndTheRest) {
    auto bytes = bytesOf(path_);
    const auto start = bytes.size() * 2 / 5;
    const auto end = bytes.size() / 2;
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(start),
              bytes.begin() + static_cast<std::ptrdiff_t>(end), '\x5A');
    writeBytes(path_, bytes);
    const CapturedOutput errors(2);
    const auto file = open(path_);
    EXPECT_EQ(file->length(), static_cast<std::int64_t>(kFrames));
    for (int pass = 0; pass < 2; ++pass) {
        const auto heard = readOn(*file);
        ASSERT_EQ(heard.front().size(), kFrames);
        EXPECT_GT(agreement(whole_, heard, 0, kFrames / 4), 30.0);
        // MP3 frames carry no time stamp.
        if (path_.extension() != ".mp3") {
            EXPECT_GT(agreement(whole_, heard, kFrames * 3 / 4, kFrames), 30.0);
        }
        file->setFramePosition(0);
    }
    expectOneWarning(errors);
}

TEST_P(DamageTest, ReadsOnWhenTheFileIsRemoved) {
    const auto file = open(path_);
    std::filesystem::remove(path_);
    for (int pass = 0; pass < 2; ++pass) {
        EXPECT_TRUE(readOn(*file) == whole_);
        file->setFramePosition(0);
    }
}

TEST_P(DamageTest, ReadsSilenceWhereTheFileWasCut) {
    const auto file = open(path_);
    std::filesystem::resize_file(path_, std::filesystem::file_size(path_) / 2);
    const CapturedOutput errors(2);
    for (int pass = 0; pass < 2; ++pass) {
        const auto heard = readOn(*file);
        ASSERT_EQ(heard.front().size(), kFrames);
        EXPECT_TRUE(isSilent(heard, kFrames * 3 / 4, kFrames));
        file->setFramePosition(0);
    }
    expectOneWarning(errors);
}

TEST_P(DamageTest, ReadsSilenceWhenTheFileIsEmptied) {
    const auto file = open(path_);
    std::filesystem::resize_file(path_, 0);
    const CapturedOutput errors(2);
    for (int pass = 0; pass < 3; ++pass) {
        const auto heard = readOn(*file);
        ASSERT_EQ(heard.front().size(), kFrames);
        EXPECT_TRUE(isSilent(heard, kFrames / 2, kFrames));
        file->setFramePosition(0);
    }
    expectOneWarning(errors);
}

INSTANTIATE_TEST_SUITE_P(Kinds, DamageTest, ::testing::Values("a.m4a", "a.flac", "a.mp3", "a.ogg"));

}  // namespace
}  // namespace orvalo::testing
