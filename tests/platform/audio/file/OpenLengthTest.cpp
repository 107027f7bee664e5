#include <gtest/gtest.h>

#include <string>

#include "tests/platform/audio/file/AudioFixtures.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

// Offset of the data size in a wave file of writeWav().
constexpr std::size_t kDataSizePlace = 40;
constexpr std::size_t kFrames = 10007;

class OpenLengthTest : public ::testing::Test {
  protected:
    std::filesystem::path at(const std::string& name) const { return folder_.path() / name; }
    const Channels signal_ = noise(2, kFrames);

  private:
    TemporaryFolder folder_;
};

// A recorder that writes into a stream cannot state the length afterwards.
TEST_F(OpenLengthTest, AWaveFileWithAnOpenSizeLastsToItsEnd) {
    writeWav(at("whole.wav"), 48000, signal_);
    const auto whole = readOn(*open(at("whole.wav")));
    const auto bytes = bytesOf(at("whole.wav"));
    for (const auto& size : {std::string(4, '\0'), std::string(4, '\xFF')}) {
        auto open_ = bytes;
        writeBytes(at("open.wav"), open_.replace(kDataSizePlace, 4, size));
        const auto file = open(at("open.wav"));
        EXPECT_EQ(file->length(), static_cast<std::int64_t>(kFrames));
        EXPECT_TRUE(readOn(*file) == whole);
    }
}

TEST_F(OpenLengthTest, ChunksAfterTheDataAreNotPlayed) {
    writeWav(at("a.wav"), 48000, signal_);
    writeBytes(at("a.wav"),
               bytesOf(at("a.wav")) + std::string("LIST\x40\0\0\0", 8) + std::string(64, 'x'));
    EXPECT_EQ(open(at("a.wav"))->length(), static_cast<std::int64_t>(kFrames));
}

TEST_F(OpenLengthTest, AFlacFileWithoutALengthIsMeasured) {
    writeEncoded(at("a.flac"), signal_, 48000.0);
    auto bytes = bytesOf(at("a.flac"));
    // The last 36 bits before the checksum in the stream's first block.
    bytes[21] = static_cast<char>(bytes[21] & 0xF0);
    writeBytes(at("a.flac"), bytes.replace(22, 4, std::string(4, '\0')));
    const auto file = open(at("a.flac"));
    EXPECT_EQ(file->length(), static_cast<std::int64_t>(kFrames));
    EXPECT_EQ(readOn(*file).front().size(), kFrames);
}

TEST_F(OpenLengthTest, AnMp3FileWithoutANoteIsMeasured) {
    writeEncoded(at("a.mp3"), signal_, 48000.0, {"-write_xing", "0"});
    const auto file = open(at("a.mp3"));
    EXPECT_EQ(file->length() % 1152, 0);
    EXPECT_GE(file->length(), static_cast<std::int64_t>(kFrames));
    EXPECT_EQ(readOn(*file).front().size(), static_cast<std::size_t>(file->length()));
}

TEST_F(OpenLengthTest, FragmentedMp4IsMeasured) {
    writeEncoded(
        at("a.m4a"), signal_, 48000.0,
        {"-movflags", "+frag_keyframe+empty_moov+default_base_moof", "-frag_duration", "50000"});
    const auto file = open(at("a.m4a"));
    EXPECT_GE(file->length(), static_cast<std::int64_t>(kFrames));
    EXPECT_LT(file->length(), static_cast<std::int64_t>(kFrames + 2048));
    const auto first = readOn(*file);
    EXPECT_EQ(first.front().size(), static_cast<std::size_t>(file->length()));
    file->setFramePosition(0);
    EXPECT_TRUE(readOn(*file) == first);
}

TEST_F(OpenLengthTest, OtherContainersAreRead) {
    for (const auto* name : {"a.aiff", "a.au", "a.caf", "a.w64", "a.wv", "a.aac", "a.mka"}) {
        SCOPED_TRACE(name);
        writeEncoded(at(name), signal_, 48000.0);
        const auto file = open(at(name));
        EXPECT_NEAR(static_cast<double>(file->length()), kFrames, 3000.0);
        EXPECT_EQ(readOn(*file).front().size(), static_cast<std::size_t>(file->length()));
    }
}

// The sound's length counts, whether a tag states it or not.
TEST_F(OpenLengthTest, AFilmLongerThanItsSoundIsAsLongAsItsSound) {
    writeWav(at("a.wav"), 48000, signal_);
    for (const auto* name : {"a.mkv", "a.webm"}) {
        SCOPED_TRACE(name);
        const bool isWebm = std::string(name) == "a.webm";
        encode(
            at("a.wav"), at(name),
            {"-f", "lavfi", "-i", "color=red:size=64x64:duration=3", "-map", "0:a", "-map", "1:v",
             "-c:v", isWebm ? "libvpx" : "mpeg4", "-c:a", isWebm ? "libopus" : "pcm_s16le"});
        const auto file = open(at(name));
        EXPECT_NEAR(static_cast<double>(file->length()), kFrames, 3000.0);
        EXPECT_EQ(readOn(*file).front().size(), static_cast<std::size_t>(file->length()));
    }
}

TEST_F(OpenLengthTest, AFilmWithoutATagForItsSoundIsAsLongAsItsSound) {
    writeWav(at("a.wav"), 48000, signal_);
    encode(at("a.wav"), at("a.mkv"),
           {"-f", "lavfi", "-i", "color=red:size=64x64:duration=3", "-map", "0:a", "-map", "1:v",
            "-c:v", "mpeg4", "-c:a", "vorbis", "-strict", "-2"});
    auto bytes = bytesOf(at("a.mkv"));
    for (std::size_t place = 0; (place = bytes.find("DURATION", place)) != std::string::npos;) {
        bytes.replace(place, 8, "UNKNOWN_");
    }
    writeBytes(at("a.mkv"), bytes);
    const auto file = open(at("a.mkv"));
    EXPECT_NEAR(static_cast<double>(file->length()), kFrames, 3000.0);
    EXPECT_EQ(readOn(*file).front().size(), static_cast<std::size_t>(file->length()));
}

TEST_F(OpenLengthTest, AFilmWhoseSoundIsCutShortIsRefused) {
    writeWav(at("a.wav"), 48000, noise(2, 480000));
    encode(at("a.wav"), at("a.mkv"),
           {"-f", "lavfi", "-i", "color=red:size=64x64:duration=3", "-map", "0:a", "-map", "1:v",
            "-c:v", "mpeg4", "-c:a", "flac"});
    auto bytes = bytesOf(at("a.mkv"));
    writeBytes(at("a.mkv"), bytes.substr(0, bytes.size() / 2));
    EXPECT_EQ(refusalOf(at("a.mkv")),
              at("a.mkv").string() + ": the file is shorter than it states");
}

TEST_F(OpenLengthTest, CoverArtIsIgnored) {
    encode("color=red:size=64x64:duration=0.1", at("cover.png"), {"-frames:v", "1"});
    writeWav(at("a.wav"), 44100, signal_);
    for (const auto* name : {"a.m4a", "a.mp3", "a.flac"}) {
        SCOPED_TRACE(name);
        encode(at("a.wav"), at(name),
               {"-i", at("cover.png"), "-map", "1:v", "-map", "0:a", "-c:v", "copy",
                "-disposition:v:0", "attached_pic"});
        const auto file = open(at(name));
        EXPECT_EQ(file->length(), static_cast<std::int64_t>(kFrames));
        EXPECT_EQ(readOn(*file).front().size(), kFrames);
    }
}

}  // namespace
}  // namespace orvalo::testing
