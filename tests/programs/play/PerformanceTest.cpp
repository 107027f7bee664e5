#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <regex>

#include "tests/programs/play/PlayFixture.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

using ::testing::Contains;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::Not;

class PerformanceTest : public PlayFixture {
  protected:
    /// LV2_PATH with that effect of the misbehaving ones as Orvalo.
    std::string misbehaving(const std::string& effect) {
        return standIn("urn:orvalo:misbehaving:" + effect) + ":" ORVALO_MISBEHAVING;
    }
    void useProgramWithoutDemonstrationFiles() {
        program = (folder.path() / "bin" / "orvalo-play").string();
        std::filesystem::create_directories(folder.path() / "bin");
        std::filesystem::copy_file(staged("orvalo-play"), program);
        for (const auto* part : {"lib", "libexec"}) {
            std::filesystem::create_directory_symlink(std::filesystem::path(ORVALO_STAGE) / part,
                                                      folder.path() / part);
        }
    }
    /// The lines from the start until a file plays.
    static Lines start(const std::string& file) {
        return {
            "NOTE: WE ARE IN AUDIO UNIT RELEASE MODE. ENSURE THE STORYBOARD CONNECTIONS ARE VALID!",
            "AUExtensionManager: Loaded component has following properties.",
            "",
            "Process Name: orvalo-play PID: #",
            "",
            "AUExtension (",
            "type: aumf",
            "subtype: orVL",
            "manufacturer: TSLY",
            "flags: 0x00000002",
            ")",
            "AUExtensionManager: Audio unit was found, making connections now ...",
            "AUEnginePlayer: A new audio unit will be connected.",
            "AUEnginePlayer: The audio unit reports MIDI output names. Assigning a handling block.",
            "AUEnginePlayer: Audio unit was attached.",
            ("AUEnginePlayer::ERROR: There was a problem with the file processing format or the "
             "file is nil (yet)."),
            "AUExtensionManager: Performed audio unit connection.",
            "WARNING: Audio unit is nil (yet?).",
            "AUEnginePlayer: Audio file at '" + file +
                "' was selected for loading into the player.",
            "AUEnginePlayer: Player was (temporarily) disconnecting from the main mixer.",
            "AUEnginePlayer: Audio unit was (temporarily) disconnecting from the player.",
            "2",
            "AUEnginePlayer: Audio unit re-connecting to the player.",
            "AUEnginePlayer: Audio unit re-connectingto the main mixer.",
            file,
            "AUEnginePlayer: Audio session was set active.",
            "AUEnginePlayer: Audio engine starting.",
        };
    }
    static Lines stop() {
        return {"AUEnginePlayer: Audio session was set active.",
                "AUEnginePlayer: Audio engine stopping."};
    }
    /// The lines without the process's number and the effect's MIDI, which depends on the music.
    static Lines plain(const Lines& lines) {
        Lines result;
        for (const auto& line : lines) {
            if (!line.starts_with("AUEnginePlayer: MIDI event from audio unit at: ")) {
                result.push_back(std::regex_replace(line, std::regex("PID: [0-9]+"), "PID: #"));
            }
        }
        return result;
    }
    static Lines joined(Lines first, const Lines& second) {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }
};

TEST_F(PerformanceTest, PlaysTheRequestedPassesAndStops) {
    // It stops 0.2 s after the second pass, before the end of the third.
    const auto file = wav("music.wav", 48000, 96000);
    const auto end = run({"--file", file, "--passes", "2"});
    EXPECT_EQ(end.status, 0);
    const auto looped = "AUEnginePlayer: Current audio file '" + file + "' looped: ";
    EXPECT_THAT(
        plain(end.output),
        ElementsAreArray(joined(joined(start(file), {looped + "1.", looped + "2."}), stop())));
    EXPECT_THAT(end.error,
                HasSubstr("Audio output: a silent clock (48000 Hz, 2 channels, 512 frames)."));
}

TEST_F(PerformanceTest, PassesShorterThanTheWaitForTheEndAreCountedExactly) {
    const auto file = wav("music.wav", 48000, 4800);
    const auto end = run({"--file", file, "--passes", "3"});
    EXPECT_EQ(end.status, 0);
    const auto looped = "AUEnginePlayer: Current audio file '" + file + "' looped: ";
    EXPECT_THAT(plain(end.output),
                ElementsAreArray(joined(
                    joined(start(file), {looped + "1.", looped + "2.", looped + "3."}), stop())));
}

TEST_F(PerformanceTest, PlaysADemonstrationFileUntilTheSecondsAreOver) {
    const auto end = run({"--seconds", "0.2"});
    EXPECT_EQ(end.status, 0);
    ASSERT_GT(end.output.size(), 20U);
    std::smatch match;
    const auto lines = plain(end.output);
    ASSERT_TRUE(std::regex_match(
        lines[18], match,
        std::regex("AUEnginePlayer: Audio file at '(.*/share/orvalo/([0-9]+)\\.m4a)' was selected "
                   "for loading into the player\\.")));
    const int number = std::stoi(match[2]);
    EXPECT_TRUE(number >= 1 && number <= 80) << number;
    EXPECT_THAT(lines, ElementsAreArray(joined(start(match[1]), stop())));
}

TEST_F(PerformanceTest, AnInterruptStopsPlayback) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        Program playing(command({"--file", wav("music.wav", 48000, 480000)}), environment);
        playing.readUntil("AUEnginePlayer: Audio engine starting.");
        playing.signal(number);
        EXPECT_THAT(plain(playing.readAll()), ElementsAreArray(stop()));
        EXPECT_EQ(playing.wait(), 0);
    }
}

TEST_F(PerformanceTest, AnInterruptBeforePlayingEndsAtOnce) {
    // The effect loops while it is instantiated, so playback has not started.
    environment["LV2_PATH"] = misbehaving("made-loop");
    Program playing(command({}), environment);
    playing.readUntil("flags: 0x00000002");
    playing.readUntil(")");
    playing.signal(SIGINT);
    EXPECT_THAT(playing.readAll(), ElementsAreArray(Lines{}));
    EXPECT_EQ(playing.wait(), 0) << playing.standardError();
}

TEST_F(PerformanceTest, PlaysWithoutAMissingEffect) {
    useProgramWithoutEffect();
    const auto file = wav("music.wav", 44100, 4410);
    const auto end = run({"--file", file, "--seconds", "0.05"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.error, HasSubstr("The effect cannot be used; playing without it."));
    ASSERT_GT(end.output.size(), 5U);
    EXPECT_EQ(end.output[1], "ERROR: There were no audio units found.");
    EXPECT_EQ(end.output[3], "AUEnginePlayer: The player was connected to the mainMixerNode.");
}

TEST_F(PerformanceTest, PlaysWithoutARefusedEffectAtOnce) {
    environment["LV2_PATH"] = standIn("urn:orvalo:zoo:failing") + ":" ORVALO_ZOO;
    const auto end = run({"--file", wav("music.wav", 48000, 4800), "--seconds", "0.05"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.output, Contains("Error: Could not instantiate audio unit."));
    EXPECT_THAT(end.error, HasSubstr("The effect cannot be used; playing without it."));
    EXPECT_THAT(end.error, Not(HasSubstr("was not ready")));
}

TEST_F(PerformanceTest, PlaysWithoutAnEffectThatIsNotReadyInTime) {
    environment["LV2_PATH"] = misbehaving("made-loop");
    const auto end = run({"--file", wav("music.wav", 48000, 4800), "--seconds", "0.05"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.error, HasSubstr("The effect was not ready after 5 s; playing without it."));
}

TEST_F(PerformanceTest, PlaysDryWhileTheEffectHangsInItsPreparation) {
    environment["ORVALO_EFFECT_LOADING"] = "out-of-process";
    environment["LV2_PATH"] = misbehaving("remade-loop");
    // The effect is made for a file that is given, but for the rate of the demonstration files
    // otherwise.
    useProgramWithoutDemonstrationFiles();
    const auto resources = folder.path() / "share" / "orvalo";
    std::filesystem::create_directories(resources);
    const auto music = wav("music.wav", 44100, 441000);
    for (int number = 1; number <= 80; ++number) {
        std::filesystem::create_symlink(music, resources / (std::to_string(number) + ".m4a"));
    }
    const auto end = run({"--seconds", "0.05"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.output.back(), "AUEnginePlayer: Audio engine stopping.");
    EXPECT_THAT(end.error, HasSubstr("The effect <urn:orvalo:misbehaving:remade-loop> is not ready "
                                     "for 44100 Hz after 750 ms; playback is dry until it is."));
    EXPECT_THAT(end.error, Not(HasSubstr("did not answer")));
}

TEST_F(PerformanceTest, AMissingDemonstrationFileEndsTheProgram) {
    useProgramWithoutDemonstrationFiles();
    const auto end = run({});
    EXPECT_EQ(end.status, -SIGABRT);
    EXPECT_THAT(end.error, HasSubstr("Fatal error: "));
    EXPECT_EQ(end.output.back(), "WARNING: Audio unit is nil (yet?).");
}

TEST_F(PerformanceTest, AClosedOutputDoesNotEndIt) {
    Program playing(command({"--file", wav("music.wav", 48000, 4800)}), environment);
    playing.readUntil("AUEnginePlayer: Audio engine starting.");
    playing.closeOutput();
    playing.signal(SIGINT);
    EXPECT_EQ(playing.wait(), 0);
}

/// The command with a standard output whose pipe is full from the start.
std::vector<std::string> onFullPipe(std::vector<std::string> command) {
    const std::vector<std::string> shell{"sh", "-c", R"(head -c 65536 /dev/zero; exec "$0" "$@")"};
    command.insert(command.begin(), shell.begin(), shell.end());
    return command;
}

TEST_F(PerformanceTest, AnUnreadOutputDoesNotKeepItFromEnding) {
    for (const int number : {SIGINT, SIGTERM}) {
        Program playing(onFullPipe(command({"--file", wav("music.wav", 48000, 4800)})),
                        environment);
        ASSERT_TRUE(pollUntil(
            [&] { return playing.standardError().find("Audio output: ") != std::string::npos; }));
        playing.signal(number);
        EXPECT_EQ(playing.wait(), 0);
    }
    Program playing(
        onFullPipe(command({"--file", wav("music.wav", 48000, 4800), "--seconds", "0.1"})),
        environment);
    EXPECT_EQ(playing.wait(), 0);
}

TEST_F(PerformanceTest, AnUnreadStandardErrorDoesNotKeepItFromEnding) {
    // A pipe that is full from the start.
    std::vector<std::string> shell{
        "sh", "-c",
        R"(mkfifo "$0" && exec 9<>"$0" && head -c 65536 /dev/zero >&9 && exec "$@" 2>&9)",
        (folder.path() / "pipe").string()};
    const auto file = wav("music.wav", 48000, 480000);
    const auto playing = command({"--file", file});
    shell.insert(shell.end(), playing.begin(), playing.end());
    Program unread(shell, environment);
    EXPECT_THAT(plain(unread.readUntil("AUEnginePlayer: Audio engine starting.")),
                ElementsAreArray(start(file)));
    unread.signal(SIGINT);
    EXPECT_THAT(plain(unread.readAll()), ElementsAreArray(stop()));
    EXPECT_EQ(unread.wait(), 0);
}

TEST_F(PerformanceTest, AnOutputReadLateHasAllLinesInOrder) {
    const auto file = wav("music.wav", 48000, 480000);
    Program playing(onFullPipe(command({"--file", file})), environment);
    ASSERT_TRUE(pollUntil(
        [&] { return playing.standardError().find("Audio output: ") != std::string::npos; }));
    auto lines = plain(playing.readUntil("AUEnginePlayer: Audio engine starting."));
    lines.front().erase(0, 65536);
    EXPECT_THAT(lines, ElementsAreArray(start(file)));
    playing.signal(SIGINT);
    EXPECT_THAT(plain(playing.readAll()), ElementsAreArray(stop()));
    EXPECT_EQ(playing.wait(), 0);
}

TEST_F(PerformanceTest, ClosedStandardStreamsAreOpenedOnTheNullDevice) {
    std::vector<std::string> closing{"sh", "-c", R"(exec "$0" "$@" <&- >&- 2>&-)"};
    const auto playing = command({"--file", wav("music.wav", 48000, 480000)});
    closing.insert(closing.end(), playing.begin(), playing.end());
    Program closed(closing, environment);
    for (int stream = 0; stream < 3; ++stream) {
        const auto link =
            "/proc/" + std::to_string(closed.process()) + "/fd/" + std::to_string(stream);
        EXPECT_TRUE(pollUntil([&] {
            std::error_code missing;
            return std::filesystem::read_symlink(link, missing) == "/dev/null";
        })) << stream;
    }
}

}  // namespace

}  // namespace orvalo::testing
