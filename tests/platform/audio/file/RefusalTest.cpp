#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>

#include "platform/foundation/NSError.h"
#include "tests/platform/audio/file/AudioFixtures.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

class RefusalTest : public ::testing::Test {
  protected:
    std::filesystem::path at(const std::string& name) const { return folder_.path() / name; }

    std::filesystem::path made(const std::string& name,
                               const std::vector<std::string>& arguments = {}) const {
        writeEncoded(at(name), risingSines(44100.0, 2, 100000), 44100.0, arguments);
        return at(name);
    }

    static void cut(const std::filesystem::path& path, std::size_t share) {
        std::filesystem::resize_file(path, std::filesystem::file_size(path) * share / 100);
    }

    // Expects the error "<path>: <reason>", and nothing on standard error.
    static void expectRefused(const std::filesystem::path& path, const std::string& reason) {
        const CapturedOutput errors(2);
        EXPECT_EQ(refusalOf(path), path.string() + ": " + reason);
        EXPECT_EQ(errors.text(), "");
    }

    static constexpr const char* kForeign = "not a sound file of a known kind";
    static constexpr const char* kShort = "the file is shorter than it states";

  private:
    TemporaryFolder folder_;
};

TEST_F(RefusalTest, RefusesAMissingFile) {
    expectRefused(at("none.m4a"), "No such file or directory");
}

TEST_F(RefusalTest, RefusesADirectory) {
    expectRefused(at(""), "Is a directory");
}

TEST_F(RefusalTest, RefusesAnUnreadableFile) {
    const auto path = made("a.wav");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    // The superuser reads everything.
    if (geteuid() == 0) {
        EXPECT_EQ(refusalOf(path), "");
    } else {
        expectRefused(path, "Permission denied");
    }
}

TEST_F(RefusalTest, RefusesAPipeWithoutWaitingForAWriter) {
    ASSERT_EQ(mkfifo(at("pipe.m4a").c_str(), 0600), 0);
    expectRefused(at("pipe.m4a"), "not a regular file");
}

TEST_F(RefusalTest, RefusesAnEmptyFile) {
    writeBytes(at("empty.m4a"), "");
    expectRefused(at("empty.m4a"), "the file is empty");
}

TEST_F(RefusalTest, TheErrorCarriesItsDomainAndCode) {
    writeBytes(at("empty.m4a"), "");
    try {
        open(at("empty.m4a"));
        FAIL() << "opened";
    } catch (const NSError& error) {
        EXPECT_EQ(error.domain(), "AVAudioFileErrorDomain");
        EXPECT_EQ(error.code(), 2);
    }
}

// In a child process that has opened no file before. Not under the sanitizers: the one for
// undefined behaviour opens a pipe.
#ifndef __SANITIZE_ADDRESS__
TEST_F(RefusalTest, NamesFFmpegWhenNoDescriptorIsLeftToLoadIt) {
    writeBytes(at("a.wav"), "not empty");
    const auto refuse = [this] {
        // One descriptor is left, for the file itself.
        const int next = dup(STDERR_FILENO);
        close(next);
        rlimit descriptors{};
        getrlimit(RLIMIT_NOFILE, &descriptors);
        const auto most = std::exchange(descriptors.rlim_cur, static_cast<rlim_t>(next) + 1);
        setrlimit(RLIMIT_NOFILE, &descriptors);
        std::fprintf(stderr, "%s|", refusalOf(at("a.wav")).c_str());
        descriptors.rlim_cur = most;
        setrlimit(RLIMIT_NOFILE, &descriptors);
        std::fprintf(stderr, "%s|", refusalOf(at("a.wav")).c_str());
        std::exit(0);
    };
    EXPECT_EXIT(refuse(), ::testing::ExitedWithCode(0),
                R"(/a\.wav: FFmpeg cannot be loaded \(.*late-ffmpeg\.so: .*: )"
                R"(Too many open files\)\|.*/a\.wav: not a sound file of a known kind\|)");
}
#endif

TEST_F(RefusalTest, RefusesForeignData) {
    std::string text;
    for (int line = 0; line < 500; ++line) {
        text += "A file of text, line " + std::to_string(line) + ".\n";
    }
    writeBytes(at("text.m4a"), text);
    expectRefused(at("text.m4a"), kForeign);
    std::mt19937 random(3);
    for (const std::size_t size : {1U, 100U, 5000U, 300000U}) {
        std::string bytes(size, '\0');
        for (auto& byte : bytes) {
            byte = static_cast<char>(random());
        }
        writeBytes(at("random.mp3"), bytes);
        expectRefused(at("random.mp3"), kForeign);
    }
    writeBytes(at("zeros.wav"), std::string(100000, '\0'));
    expectRefused(at("zeros.wav"), kForeign);
}

TEST_F(RefusalTest, RefusesPictures) {
    encode("color=red:size=64x64:duration=0.1", at("a.png"), {"-frames:v", "1"});
    expectRefused(at("a.png"), kForeign);
}

TEST_F(RefusalTest, RefusesScriptsThatNameOtherFiles) {
    made("a.wav");
    writeBytes(at("list.m3u8"),
               "#EXTM3U\n#EXT-X-TARGETDURATION:3\n#EXTINF:2,\na.wav\n#EXT-X-ENDLIST\n");
    expectRefused(at("list.m3u8"), kForeign);
    writeBytes(at("list.ffconcat"), "ffconcat version 1.0\nfile 'a.wav'\n");
    expectRefused(at("list.ffconcat"), kForeign);
}

TEST_F(RefusalTest, RefusesAFilmWithoutSound) {
    encode("color=red:size=64x64:duration=0.5", at("film.mp4"), {"-c:v", "mpeg4"});
    expectRefused(at("film.mp4"), "holds no sound");
}

TEST_F(RefusalTest, RefusesAFileWithoutFrames) {
    writeWav(at("none.wav"), 44100, {{}, {}});
    expectRefused(at("none.wav"), "holds no sound that can be decoded");
}

TEST_F(RefusalTest, RefusesMoreThan32Channels) {
    writeWav(at("many.wav"), 44100, Channels(33, std::vector<float>(1000)));
    expectRefused(at("many.wav"), "has 33 channels, more than 32");
    writeWav(at("enough.wav"), 44100, Channels(32, std::vector<float>(1000)));
    EXPECT_EQ(refusalOf(at("enough.wav")), "");
}

TEST_F(RefusalTest, RefusesSampleRatesOutside1000To768000Hz) {
    writeWav(at("slow.wav"), 999, Channels(1, std::vector<float>(1000)));
    expectRefused(at("slow.wav"), "has a sample rate of 999 Hz, outside 1000 to 768000");
    writeWav(at("fast.wav"), 768001, Channels(1, std::vector<float>(1000)));
    expectRefused(at("fast.wav"), "has a sample rate of 768001 Hz, outside 1000 to 768000");
}

TEST_F(RefusalTest, RefusesACodecWithoutDecoder) {
    // An unassigned format tag.
    const auto path = made("a.wav");
    writeBytes(path, bytesOf(path).replace(20, 2, "ww"));
    expectRefused(path, "no decoder for its sound (none)");
}

TEST_F(RefusalTest, RefusesACutMp4WithItsHeaderInFront) {
    for (const std::size_t share : {99U, 60U, 20U}) {
        const auto path = made("front.m4a", {"-movflags", "+faststart"});
        cut(path, share);
        expectRefused(path, kShort);
    }
    const auto path = made("front.m4a", {"-movflags", "+faststart"});
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - 1);
    expectRefused(path, kShort);
}

TEST_F(RefusalTest, RefusesACutMp4WithItsHeaderAtTheEnd) {
    const auto path = made("behind.m4a");
    cut(path, 60);
    expectRefused(path, "its header is damaged or cut off");
}

TEST_F(RefusalTest, RefusesACutWav) {
    for (const std::size_t share : {99U, 50U}) {
        const auto path = made("a.wav");
        cut(path, share);
        expectRefused(path, kShort);
    }
}

TEST_F(RefusalTest, RefusesACutFlac) {
    for (const std::size_t share : {99U, 50U, 20U}) {
        const auto path = made("a.flac");
        cut(path, share);
        expectRefused(path, kShort);
    }
    const auto path = made("a.flac");
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - 1);
    expectRefused(path, kShort);
}

TEST_F(RefusalTest, RefusesACutMp3ThatStatesItsFrames) {
    for (const std::size_t share : {95U, 50U, 20U}) {
        const auto path = made("a.mp3");
        cut(path, share);
        expectRefused(path, kShort);
    }
}

TEST_F(RefusalTest, RefusesACutOgg) {
    for (const std::size_t share : {99U, 80U}) {
        for (const auto* name : {"a.ogg", "a.opus"}) {
            const auto path = made(name);
            cut(path, share);
            expectRefused(path, kShort);
        }
    }
}

// A wave file whose header states 2^60 frames.
TEST_F(RefusalTest, RefusesALengthBeyondTheFilesSize) {
    encode(made("a.wav"), at("a.w64"));
    auto bytes = bytesOf(at("a.w64"));
    const auto data = bytes.find("data\xF3\xAC\xD3\x11");
    ASSERT_NE(data, std::string::npos);
    bytes.replace(data + 16, 8, std::string("\0\0\0\0\0\0\0\x10", 8));
    writeBytes(at("a.w64"), bytes);
    expectRefused(at("a.w64"), kShort);
}

}  // namespace
}  // namespace orvalo::testing
