#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/audio/file/AVAudioFile.h"
#include "tests/programs/play/PlayFixture.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;

/// Waits until the program says where it has loaded the effect from.
bool hasLoadedEffect(const Program& program) {
    return pollUntil(
        [&] { return program.standardError().find("is loaded from") != std::string::npos; });
}

/// The lines with that text.
std::vector<std::string> linesWith(const std::string& text, const std::string& part) {
    std::vector<std::string> found;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.find(part) != std::string::npos) {
            found.push_back(line);
        }
    }
    return found;
}

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

TEST_F(RenderTest, ALatencyToldAfterTheFirstRunsIsCut) {
    environment["LV2_PATH"] = standIn("urn:orvalo:zoo:told-late", ORVALO_ZOO);
    const auto end = run({"--file", wav("music.wav", 48000, 300011, 1), "--render", out});
    ASSERT_EQ(end.status, 0) << end.error;
    EXPECT_EQ(read(out)[0], noise(1, 300011, 1)[0]);
}

TEST_F(RenderTest, AConvolverWithAnImpulseResponseIsAligned) {
    // It loads the impulse, a single 1, in its worker, and knows its latency after the first run.
    const std::string plugin = "http://gareus.org/oss/lv2/zeroconvolv";
    environment["LV2_PATH"] = standIn(plugin + "#Mono");
    std::ofstream(folder.path() / "lv2" / "stand-in.lv2" / "manifest.ttl", std::ios::app)
        << "<" << plugin << "#Mono> <http://lv2plug.in/ns/ext/state#state> [ <" << plugin
        << "#ir> <file:///usr/lib/lv2/zeroconvo.lv2/ir/delta-48k.wav> ] .\n";
    const auto end = run({"--file", wav("music.wav", 48000, 30011, 1), "--render", out});
    ASSERT_EQ(end.status, 0) << end.error;
    const auto rendered = read(out)[0];
    const auto expected = noise(1, 30011, 1)[0];
    ASSERT_EQ(rendered.size(), expected.size());
    // The first block is silent, because the effect loads the impulse meanwhile.
    for (std::size_t frame = 4096; frame < rendered.size(); ++frame) {
        ASSERT_NEAR(rendered[frame], expected[frame], 1e-5) << frame;
    }
    EXPECT_THAT(linesWith(end.error, "block-size"), IsEmpty());
}

TEST_F(RenderTest, ALatencyThatChangesIsFollowed) {
    environment["LV2_PATH"] = standIn("urn:orvalo:zoo:changing", ORVALO_ZOO);
    const auto end = run({"--file", wav("music.wav", 48000, 300011, 1), "--render", out});
    ASSERT_EQ(end.status, 0) << end.error;
    auto expected = noise(1, 300011, 1)[0];
    // What the effect leaves out when its delay shrinks from 1000 frames to 100.
    std::fill(expected.begin() + 163840 - 1000, expected.begin() + 163840 - 100, 0.0F);
    EXPECT_EQ(read(out)[0], expected);
}

TEST_F(RenderTest, AFileThatIsShorterThanTheTimeToKnowTheLatencyIsAligned) {
    environment["LV2_PATH"] = standIn("urn:orvalo:zoo:told-late", ORVALO_ZOO);
    const auto end =
        run({"--file", wav("music.wav", 48000, 100, 1), "--render", out, "--passes", "2"});
    ASSERT_EQ(end.status, 0) << end.error;
    auto expected = noise(1, 100, 1)[0];
    const auto pass = expected;
    expected.insert(expected.end(), pass.begin(), pass.end());
    EXPECT_EQ(read(out)[0], expected);
}

TEST_F(RenderTest, TheEffectIsMadeOnceAtTheRateOfTheFile) {
    environment["LV2_PATH"] = standIn("urn:orvalo:zoo:deferred", ORVALO_ZOO);
    const auto music = wav("music.wav", 44100, 30011, 1);
    const auto rendered = run({"--file", music, "--render", out});
    ASSERT_EQ(rendered.status, 0) << rendered.error;
    EXPECT_THAT(linesWith(rendered.error, "<urn:orvalo:zoo:deferred>: made at"),
                ElementsAre(EndsWith("<urn:orvalo:zoo:deferred>: made at 44100 Hz")));
    const auto played = run({"--file", music, "--passes", "1"});
    ASSERT_EQ(played.status, 0) << played.error;
    EXPECT_THAT(linesWith(played.error, "<urn:orvalo:zoo:deferred>: made at"),
                ElementsAre(EndsWith("<urn:orvalo:zoo:deferred>: made at 44100 Hz")));
}

TEST_F(RenderTest, TheFirstOfTwoBundlesWithOneEffectIsUsedWhole) {
    const auto name = [](const std::filesystem::path& place) {
        return std::filesystem::canonical(place / "deferred.lv2").string();
    };
    // Copies of the effect whose default states differ. The second one has a higher version.
    for (const std::string place : {"first", "second"}) {
        const auto bundle = folder.path() / place / "deferred.lv2";
        std::filesystem::create_directories(bundle.parent_path());
        std::filesystem::copy(ORVALO_ZOO "/deferred.lv2", bundle,
                              std::filesystem::copy_options::recursive);
        std::stringstream manifest;
        manifest << std::ifstream(bundle / "manifest.ttl").rdbuf();
        auto text = manifest.str();
        const bool isSecond = place == "second";
        text.replace(text.find("\"0.5\""), 5, isSecond ? "\"0.125\"" : "\"0.25\"");
        std::ofstream(bundle / "manifest.ttl")
            << text << (isSecond ? "<urn:orvalo:zoo:deferred> lv2:minorVersion 9 .\n" : "");
    }
    const auto music = wav("music.wav", 48000, 30011, 1);
    auto expected = noise(1, 30011, 1)[0];
    for (auto& sample : expected) {
        sample *= 0.25F;
    }
    const auto first = folder.path() / "first";
    const auto second = folder.path() / "second";
    const auto codes = standIn("urn:orvalo:zoo:deferred", first.string());
    environment["LV2_PATH"] = codes + ":" + second.string();
    const auto end = run({"--file", music, "--render", out});
    ASSERT_EQ(end.status, 0) << end.error;
    EXPECT_EQ(read(out)[0], expected);
    EXPECT_THAT(linesWith(end.error, "is loaded from"),
                ElementsAre(EndsWith("The effect <urn:orvalo:zoo:deferred> is loaded from " +
                                     name(first) + ".")));
    EXPECT_THAT(linesWith(end.error, "instead"),
                ElementsAre(EndsWith(name(second) + " holds <urn:orvalo:zoo:deferred>, which is " +
                                     "taken from " + name(first) + " instead.")));
}

TEST_F(RenderTest, NamesWithCharactersThatURIsEscapeAreUsed) {
    // One "#" as it is and one escaped, as bundles have both.
    for (const std::string hash : {"#", "%23"}) {
        const auto bundle = folder.path() / "odd" / "a #1 %41.lv2";
        std::filesystem::create_directories(bundle);
        std::filesystem::copy_file(ORVALO_ZOO "/deferred.lv2/deferred.so",
                                   bundle / "a-comp#stereo.so",
                                   std::filesystem::copy_options::overwrite_existing);
        std::ofstream(bundle / "manifest.ttl")
            << "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
               "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n"
               "<urn:orvalo:zoo:deferred#stereo> a lv2:Plugin ;\n  lv2:binary <a-comp"
            << hash << "stereo.so> ; rdfs:seeAlso <a-comp" << hash << "stereo.ttl> .\n";
        std::stringstream data;
        data << std::ifstream(ORVALO_ZOO "/deferred.lv2/manifest.ttl").rdbuf();
        auto text = data.str();
        text.erase(text.find("    lv2:binary <deferred.so> ;\n"), 31);
        text.replace(text.find("<urn:orvalo:zoo:deferred>"), 25,
                     "<urn:orvalo:zoo:deferred#stereo>");
        std::ofstream(bundle / "a-comp#stereo.ttl") << text;
        environment["LV2_PATH"] =
            standIn("urn:orvalo:zoo:deferred#stereo", bundle.parent_path().string());
        const auto end = run({"--file", wav("music.wav", 48000, 30011, 1), "--render", out});
        ASSERT_EQ(end.status, 0) << end.error;
        auto expected = noise(1, 30011, 1)[0];
        for (auto& sample : expected) {
            sample *= 0.5F;
        }
        EXPECT_EQ(read(out)[0], expected);
    }
}

TEST_F(RenderTest, ABuildInTheHomeFolderIsUsedInsteadOfTheApplicationsOwn) {
    unsetenv("LV2_PATH");  // NOLINT(concurrency-mt-unsafe): this program has one thread.
    environment.erase("LV2_PATH");
    environment["HOME"] = folder.path().string();
    const auto place = folder.path() / ".lv2" / "mine.lv2";
    std::filesystem::create_directories(place.parent_path());
    std::filesystem::copy(ORVALO_STAGE "/lib/lv2/orvalo.lv2", place,
                          std::filesystem::copy_options::recursive);
    const auto end = run({"--file", wav("music.wav", 48000, 30011, 1), "--render", out});
    ASSERT_EQ(end.status, 0) << end.error;
    EXPECT_THAT(linesWith(end.error, "is loaded from"),
                ElementsAre(EndsWith("The effect <urn:tessaly:orvalo> is loaded from " +
                                     std::filesystem::canonical(place).string() + ".")));
}

TEST_F(RenderTest, SamplesThatAreNoFiniteNumbersAreSilent) {
    environment["LV2_PATH"] = standIn("urn:orvalo:zoo:numberless", ORVALO_ZOO);
    const auto end = run({"--file", wav("music.wav", 48000, 30011, 1), "--render", out});
    ASSERT_EQ(end.status, 0) << end.error;
    auto expected = noise(1, 30011, 1)[0];
    for (std::size_t frame = 0; frame < expected.size(); ++frame) {
        if ((frame + 1) % 7 == 0 || (frame + 1) % 11 == 0) {
            expected[frame] = 0.0F;
        }
    }
    EXPECT_EQ(read(out)[0], expected);
    EXPECT_EQ(linesWith(end.error, "no finite numbers").size(), 1U) << end.error;
    const auto played = run({"--file", wav("short.wav", 48000, 4800, 1), "--passes", "1"});
    EXPECT_EQ(linesWith(played.error, "no finite numbers").size(), 1U) << played.error;
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

TEST_F(RenderTest, AnInterruptRemovesTheUnfinishedFile) {
    const auto file = wav("music.wav", 48000, 30011);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        Program rendering(command({"--file", file, "--render", out, "--seconds", "50000"}),
                          environment);
        ASSERT_TRUE(hasLoadedEffect(rendering));
        EXPECT_TRUE(std::filesystem::exists(out + ".part"));
        rendering.signal(number);
        EXPECT_EQ(rendering.wait(), -number);
        EXPECT_FALSE(std::filesystem::exists(out + ".part"));
        EXPECT_FALSE(std::filesystem::exists(out));
    }
}

TEST_F(RenderTest, AnIgnoredSignalDoesNotEndIt) {
    auto ignoring =
        command({"--file", wav("music.wav", 48000, 30011), "--render", out, "--seconds", "200"});
    const std::vector<std::string> shell{"sh", "-c", R"(trap '' HUP; exec "$0" "$@")"};
    ignoring.insert(ignoring.begin(), shell.begin(), shell.end());
    Program rendering(ignoring, environment);
    ASSERT_TRUE(hasLoadedEffect(rendering));
    rendering.signal(SIGHUP);
    EXPECT_EQ(rendering.wait(), 0);
    EXPECT_TRUE(std::filesystem::exists(out));
}

class LimitedRenderTest : public RenderTest {
  protected:
    /// Renders that file behind a shell's preparation. The error goes to standard output, because
    /// the limits apply to files. Expects that status and last line, and no file.
    void expectFailure(const std::string& file, const std::string& preparation, int status,
                       const std::string& line) {
        auto rendering = command({"--file", file, "--render", out});
        const std::vector<std::string> shell{"sh", "-c",
                                             preparation + R"( && exec "$0" "$@" 2>&1)"};
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

#if !defined(__SANITIZE_THREAD__)
// The thread sanitizer writes files of its own before main().
TEST_F(LimitedRenderTest, ALimitOnTheSizeOfFilesIsNamed) {
    const auto file = wav("music.wav", 48000, 48000);
    for (const auto* blocks : {"0", "1", "100", "700"}) {
        expectFailure(file, std::string("ulimit -f ") + blocks, 2, out + ": File too large");
    }
}
#endif

TEST_F(LimitedRenderTest, ALimitThatTheEffectsMemoryExceedsIsNamed) {
    environment["ORVALO_EFFECT_LOADING"] = "out-of-process";
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
                                             R"(' && "$0" "$@" 2>&1; echo status $?; ls -A ')" +
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
