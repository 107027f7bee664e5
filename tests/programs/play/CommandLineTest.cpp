#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/programs/play/PlayFixture.h"

namespace orvalo::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CommandLineTest : public PlayFixture {
  protected:
    /// Expects that line on standard error, empty standard output and exit status 2.
    void expectRefusal(const std::vector<std::string>& arguments, const std::string& line) {
        const auto end = run(arguments);
        EXPECT_EQ(end.status, 2);
        EXPECT_THAT(end.output, IsEmpty());
        EXPECT_EQ(end.error, "orvalo-play: " + line + "\n");
    }
};

TEST_F(CommandLineTest, BadOptionsEndWithOneLine) {
    expectRefusal({"--loudly"}, "Unknown option --loudly");
    expectRefusal({"song.wav"}, "'song.wav' is no option; a file to play goes behind --file.");
    expectRefusal({"--passes"}, "Missing argument for --passes");
    expectRefusal({"--file="}, "--file wants a file name, not an empty one.");
    expectRefusal({"--render="}, "--render wants a file name, not an empty one.");
    expectRefusal({"--effect="}, "--effect wants a URI or a folder, not an empty one.");
    expectRefusal({"--preset="}, "--preset wants a name or a URI, not an empty one.");
    expectRefusal({"--all"}, "--all goes with --list.");
    for (const auto* bad : {"0", "-1", "1.5", "many", "", " 3", "99999999999999999999"}) {
        expectRefusal({std::string("--passes=") + bad},
                      "--passes wants a whole number above 0, not '" + std::string(bad) + "'.");
    }
    for (const auto* bad : {"0", "-2", "inf", "nan", "soon", "", "1s"}) {
        expectRefusal({std::string("--seconds=") + bad},
                      "--seconds wants a number above 0, not '" + std::string(bad) + "'.");
    }
}

TEST_F(CommandLineTest, ATooLongRenderIsRefused) {
    const auto file = wav("a.wav", 48000, 100);
    const auto out = (folder.path() / "out.wav").string();
    expectRefusal({"--file", file, "--render", out, "--passes", "9223372036854775807"},
                  "--passes: a file of that length cannot be written.");
    expectRefusal({"--file", file, "--render", out, "--seconds", "1e300"},
                  "--seconds: a file of that length cannot be written.");
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(CommandLineTest, BadFilesEndWithOneLine) {
    const auto missing = (folder.path() / "missing.wav").string();
    expectRefusal({"--file", missing}, missing + ": No such file or directory");
    const auto foreign = (folder.path() / "foreign.wav").string();
    std::ofstream(foreign) << "This is no music.";
    const auto end = run({"--file", foreign, "--render", (folder.path() / "out.wav").string()});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.error, HasSubstr("orvalo-play: " + foreign + ": "));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "out.wav"));
}

TEST_F(CommandLineTest, AnOutputThatCannotBeWrittenIsNamed) {
    const auto out = (folder.path() / "no" / "such" / "out.wav").string();
    const auto end = run({"--file", wav("a.wav", 48000, 100), "--render", out});
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.error, "orvalo-play: " + out + ": No such file or directory\n");
}

TEST_F(CommandLineTest, AFullDiskIsNamed) {
    expectRefusal({"--file", wav("a.wav", 48000, 100), "--render", "/dev/full"},
                  "/dev/full: No space left on device");
}

TEST_F(CommandLineTest, AListThatCannotBeWrittenIsAnError) {
    const auto listTo = [&](const std::string& output) {
        Program listing({"/bin/sh", "-c", "exec \"$0\" --list " + output, program}, environment);
        EXPECT_EQ(listing.wait(), 2);
        return listing.standardError();
    };
    EXPECT_EQ(listTo(">/dev/full"), "orvalo-play: standard output: No space left on device\n");
    EXPECT_EQ(listTo(">&-"), "orvalo-play: standard output: Bad file descriptor\n");
}

TEST_F(CommandLineTest, OnlyWavFilesAreRendered) {
    const auto file = wav("a.wav", 48000, 100);
    for (const auto* name : {"out.mp3", "out", "out.wav.flac"}) {
        const auto out = (folder.path() / name).string();
        expectRefusal({"--file", file, "--render", out},
                      "--render writes wav files, so the name must end in .wav: '" + out + "'.");
        EXPECT_FALSE(std::filesystem::exists(out));
    }
    EXPECT_EQ(run({"--file", file, "--render", (folder.path() / "OUT.WAV").string()}).status, 0);
    EXPECT_EQ(run({"--file", file, "--render", "/dev/null"}).status, 0);
}

TEST_F(CommandLineTest, ControlCharactersInNamesAreEscaped) {
    const auto missing = (folder.path() / "a\x1b[2J\nforged\tline").string();
    expectRefusal({"--file", missing},
                  (folder.path() / R"(a\u001b[2J\nforged\u0009line)").string() +
                      ": No such file or directory");
    const auto bundles = folder.path() / "b\n\x1b[31m";
    std::filesystem::create_directories(bundles / "broken\r.lv2");
    std::ofstream(bundles / "broken\r.lv2" / "manifest.ttl") << "no Turtle";
    environment["LV2_PATH"] = bundles.string();
    const auto end = run({"--list"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.error, HasSubstr("b\\n\\u001b[31m/broken\\u000d.lv2"));
    EXPECT_EQ(end.error.find_first_of("\x1b\r"), std::string::npos) << end.error;
}

TEST_F(CommandLineTest, ControlCharactersInTheListAreEscaped) {
    environment["LV2_PATH"] = standIn("http://lv2plug.in/plugins/eg-amp");
    std::ofstream(folder.path() / "lv2" / "stand-in.lv2" / "manifest.ttl")
        << "@prefix ac: <urn:tessaly:audio-component#> .\n"
           "<http://lv2plug.in/plugins/eg-amp> ac:type \"aumf\" ; ac:subtype \"orVL\" ;\n"
           "  ac:manufacturer \"TSLY\" ; ac:flags 2 ; ac:name \"A\\u001b[31m\\nline\" .\n";
    const auto end = run({"--list"});
    ASSERT_EQ(end.output.size(), 3U);
    EXPECT_EQ(end.output[1],
              "* aumf  orVL     TSLY          0x00000002  A\\u001b[31m\\nline       "
              "http://lv2plug.in/plugins/eg-amp");
}

TEST_F(CommandLineTest, ListShowsTheRegistryInItsOrder) {
    environment["LV2_PATH"] = standIn("http://lv2plug.in/plugins/eg-amp");
    const auto end = run({"--list"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(
        end.output,
        ElementsAre("  type  subtype  manufacturer  flags       name                    plug-in",
                    "* aumf  orVL     TSLY          0x00000002  Stand-in                "
                    "http://lv2plug.in/plugins/eg-amp",
                    "  aumf  orVL     TSLY          0x00000002  TSLY: Orvalo Extension  "
                    "urn:tessaly:orvalo"));
    EXPECT_EQ(end.error, "");
}

TEST_F(CommandLineTest, ListMarksTheEffectThatPlaysAndSaysWhyAnotherDoesNot) {
    environment["LV2_PATH"] = standIn("http://lv2plug.in/plugins/eg-amp");
    const auto bundle = folder.path() / "lv2" / "stand-in.lv2";
    std::ofstream(bundle / "manifest.ttl")
        << "@prefix ac: <urn:tessaly:audio-component#> .\n"
           "<http://lv2plug.in/plugins/eg-amp> ac:type \"aumf\" ; ac:subtype \"orVL\" ;\n"
           "  ac:manufacturer \"TSLY\" ; ac:name \"Stand-in\" .\n";
    const auto line = "The effect <http://lv2plug.in/plugins/eg-amp> is passed over: " +
                      std::filesystem::canonical(bundle).string() +
                      " states its flags as 0 instead of 2.";
    const auto list = run({"--list"});
    EXPECT_EQ(list.status, 0);
    EXPECT_THAT(
        list.output,
        ElementsAre("  type  subtype  manufacturer  flags       name                    plug-in",
                    "  aumf  orVL     TSLY          0x00000000  Stand-in                "
                    "http://lv2plug.in/plugins/eg-amp",
                    "* aumf  orVL     TSLY          0x00000002  TSLY: Orvalo Extension  "
                    "urn:tessaly:orvalo"));
    EXPECT_THAT(list.error, HasSubstr(line));
    const auto played = run({"--file", wav("a.wav", 48000, 4800), "--passes", "1"});
    EXPECT_EQ(played.status, 0);
    const auto first = played.error.find(line);
    ASSERT_NE(first, std::string::npos) << played.error;
    EXPECT_EQ(played.error.find(line, first + 1), std::string::npos) << "said twice";
    EXPECT_THAT(played.error, HasSubstr("The effect <urn:tessaly:orvalo> is loaded from "));
}

/// The lines of README.md that are indented from the line with `text` on, without the indentation.
std::string readmeExample(const std::string& text) {
    std::ifstream readme(ORVALO_README);
    std::string example;
    for (std::string line; std::getline(readme, line);) {
        if (line.starts_with("    ") &&
            (!example.empty() || line.find(text) != std::string::npos)) {
            example += line.substr(4) + "\n";
        } else if (!example.empty()) {
            break;
        }
    }
    return example;
}

TEST_F(CommandLineTest, TheReadmesExampleOfAnEffectOfYourOwnWorks) {
    auto manifest = readmeExample("@prefix ac:");
    const std::string example = "http://example.org/some-plugin";
    ASSERT_NE(manifest.find(example), std::string::npos) << manifest;
    manifest.replace(manifest.find(example), example.size(), "http://lv2plug.in/plugins/eg-amp");
    environment["LV2_PATH"] = standIn("http://lv2plug.in/plugins/eg-amp");
    std::ofstream(folder.path() / "lv2" / "stand-in.lv2" / "manifest.ttl") << manifest;
    const auto end = run({"--list"});
    EXPECT_EQ(end.error, "");
    ASSERT_EQ(end.output.size(), 3U);
    EXPECT_EQ(end.output[1],
              "* aumf  orVL     TSLY          0x00000002  Example: Some Plug-in   "
              "http://lv2plug.in/plugins/eg-amp");
}

TEST_F(CommandLineTest, HelpNamesEveryOption) {
    const auto end = run({"--help"});
    EXPECT_EQ(end.status, 0);
    std::string text;
    for (const auto& line : end.output) {
        text += line + "\n";
    }
    for (const auto* option :
         {"--passes=N", "--seconds=S", "--render=FILE.wav", "--file=AUDIO", "--effect=URI|FOLDER",
          "--preset=NAME|URI", "--set=SYMBOL=VALUE", "--in-process", "--list", "--all", "--help"}) {
        EXPECT_THAT(text, HasSubstr(option));
    }
}

}  // namespace

}  // namespace orvalo::testing
