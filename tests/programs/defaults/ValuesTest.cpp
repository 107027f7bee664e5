#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/programs/defaults/ToolFixture.h"

// The commands read, write, list and delete.

namespace orvalo::testing {
namespace {

class DefaultsValuesTest : public ToolFixture {
  protected:
    void expectWritten(const std::string& option, const std::string& text,
                       const std::string& json) const {
        expectSilence({"write", "d", "k", option, text});
        expectOutput({"read", "d", "k"}, json + "\n");
    }
    /// Whether the configuration folder exists.
    bool isAnythingThere() const { return std::filesystem::exists(path("config")); }
};

TEST_F(DefaultsValuesTest, EveryTypeIsReadAsItWasWritten) {
    expectWritten("--string", "a \"text\"\n", R"("a \"text\"\n")");
    expectWritten("--string", "", R"("")");
    expectWritten("--int", "-9223372036854775808", "-9223372036854775808");
    expectWritten("--float", "5", "5.0");
    expectWritten("--float", "-1e300", "-1e+300");
    expectWritten("--float", "-inf", "{\n  \"$real\": \"-inf\"\n}");
    expectWritten("--float", "nan", "{\n  \"$real\": \"nan\"\n}");
    expectWritten("--bool", "true", "true");
    expectWritten("--bool", "no", "false");
    expectWritten("--bool", "yes", "true");
    expectWritten("--bool", "false", "false");
    expectWritten("--date", "2026-11-21T08:30:00.250Z",
                  "{\n  \"$date\": \"2026-11-21T08:30:00.250000Z\"\n}");
    expectWritten("--date", "9999-12-31T23:59:59Z", "{\n  \"$date\": \"9999-12-31T23:59:59Z\"\n}");
    expectWritten("--data", "+/8=", "{\n  \"$data\": \"+/8=\"\n}");
    expectWritten("--json", R"({"a": [1, 1.0]})", "{\n  \"a\": [\n    1,\n    1.0\n  ]\n}");
}

TEST_F(DefaultsValuesTest, RawShowsATextAsItIs) {
    expectSilence({"write", "d", "k", "--string", "tab\there \x1b[1m"});
    expectOutput({"read", "d", "k", "--raw"}, "tab\there \x1b[1m\n");
    expectSilence({"write", "d", "k", "--int", "5"});
    expectRefusal({"read", "d", "k", "--raw"}, "the value of 'k' is no text; --raw shows no other.",
                  1);
}

TEST_F(DefaultsValuesTest, ADomainIsReadInTheOrderOfItsKeys) {
    expectSilence({"write", "d", "b", "--int", "1"});
    expectSilence({"write", "d", "a", "--bool", "yes"});
    expectOutput({"read", "d"}, "{\n  \"a\": true,\n  \"b\": 1\n}\n");
    expectOutput({"list", "d"}, "a\nb\n");
}

TEST_F(DefaultsValuesTest, AKeyIsOneLineOfTheList) {
    expectSilence({"write", "d", "a\nb\\\x1b\u009b\"", "--int", "1"});
    expectSilence({"write", "d", "", "--int", "2"});
    expectOutput({"list", "d"}, "\na\\nb\\\\\\u001b\\u009b\\\"\n");
}

TEST_F(DefaultsValuesTest, DomainsAreListedByName) {
    expectOutput({"domains"}, "");
    for (const auto* name : {"group.com.Tessaly.audio", "com.tessaly.Orvalo", "d"}) {
        expectSilence({"write", name, "k", "--int", "1"});
    }
    expectOutput({"domains"}, "com.tessaly.Orvalo\nd\ngroup.com.Tessaly.audio\n");
}

TEST_F(DefaultsValuesTest, NamesAreEscapedInOutput) {
    expectRefusal({"read", "d\x1b"}, "there is no domain 'd\\u001b'.", 1);
    expectSilence({"write", "d\x1b", "k", "--int", "1"});
    expectOutput({"domains"}, "d\\u001b\n");
    expectRefusal({"read", "d\x1b", "x"}, "there is no key 'x' in 'd\\u001b'.", 1);
    expectRefusal({"write", "d", "k\x1b", "--json", R"("\u0000")"},
                  "'k\\u001b': a text in it is not UTF-8 or holds a NUL", 1);
}

TEST_F(DefaultsValuesTest, TheOwnDomainIsTheApplications) {
    expectSilence({"write", "com.tessaly.Orvalo", "k", "--int", "1"});
    EXPECT_TRUE(std::filesystem::exists(path("config/com.tessaly.Orvalo/defaults.sqlite")));
    expectOutput({"read", "com.tessaly.Orvalo"}, "{\n  \"k\": 1\n}\n");
}

TEST_F(DefaultsValuesTest, TheDefaultConfigurationFolderIsInTheHome) {
    environment["XDG_CONFIG_HOME"] = "";
    environment["HOME"] = path("home");
    expectSilence({"write", "d", "k", "--int", "1"});
    expectSilence({"write", "com.tessaly.Orvalo", "k", "--int", "2"});
    EXPECT_TRUE(std::filesystem::exists(path("home/.config/orvalo-suites/d.sqlite")));
    EXPECT_TRUE(std::filesystem::exists(path("home/.config/com.tessaly.Orvalo/defaults.sqlite")));
    expectOutput({"domains"}, "com.tessaly.Orvalo\nd\n");
}

TEST_F(DefaultsValuesTest, ARelativeConfigurationFolderIsIgnored) {
    environment["XDG_CONFIG_HOME"] = "elsewhere";
    environment["HOME"] = path("home");
    const auto ended = shell("cd " + folder.path().string() +
                             R"( && "$D" write d k --int 1 &&
                                 "$D" write com.tessaly.Orvalo k --int 2)");
    EXPECT_EQ(ended.error, "");
    EXPECT_EQ(ended.status, 0);
    EXPECT_FALSE(std::filesystem::exists(path("elsewhere")));
    EXPECT_TRUE(std::filesystem::exists(path("home/.config/orvalo-suites/d.sqlite")));
    EXPECT_TRUE(std::filesystem::exists(path("home/.config/com.tessaly.Orvalo/defaults.sqlite")));
    expectOutput({"domains"}, "com.tessaly.Orvalo\nd\n");
}

TEST_F(DefaultsValuesTest, ReadingCreatesNothing) {
    for (const std::string name : {"d", "com.tessaly.Orvalo"}) {
        const auto line = "there is no domain '" + name + "'.";
        expectRefusal({"read", name}, line, 1);
        expectRefusal({"read", name, "k"}, line, 1);
        expectRefusal({"list", name}, line, 1);
        expectRefusal({"export", name}, line, 1);
        expectRefusal({"export", name, path("out.json")}, line, 1);
        expectRefusal({"delete", name, "k"}, line, 1);
        expectRefusal({"delete", name, "--all"}, line, 1);
    }
    expectOutput({"domains"}, "");
    EXPECT_FALSE(isAnythingThere());
    EXPECT_FALSE(std::filesystem::exists(path("out.json")));
}

TEST_F(DefaultsValuesTest, AMissingKeyIsNamed) {
    expectSilence({"write", "d", "k", "--int", "1"});
    expectRefusal({"read", "d", "x\n"}, "there is no key 'x\\n' in 'd'.", 1);
    expectRefusal({"delete", "d", "x"}, "there is no key 'x' in 'd'.", 1);
    expectOutput({"list", "d"}, "k\n");
}

TEST_F(DefaultsValuesTest, DeleteRemovesOneKeyOrAll) {
    for (const auto* key : {"a", "b", "c"}) {
        expectSilence({"write", "d", key, "--int", "1"});
    }
    expectSilence({"delete", "d", "b"});
    expectOutput({"list", "d"}, "a\nc\n");
    expectSilence({"delete", "--all", "d"});
    expectOutput({"list", "d"}, "");
    expectOutput({"read", "d"}, "{}\n");
    expectSilence({"write", "d", "b", "--int", "2"});
    expectOutput({"read", "d"}, "{\n  \"b\": 2\n}\n");
}

TEST_F(DefaultsValuesTest, ARefusedValueChangesNothing) {
    const auto deep = std::string(150, '[') + std::string(150, ']');
    expectRefusal({"write", "d", "k", "--json", deep}, "'k': it is nested too deeply", 1);
    EXPECT_FALSE(isAnythingThere());
    expectSilence({"write", "d", "k", "--int", "1"});
    expectRefusal({"write", "d", "k", "--json", deep}, "'k': it is nested too deeply", 1);
    expectRefusal({"write", "d", "k", "--json", R"("a\u0000b")"},
                  "'k': a text in it is not UTF-8 or holds a NUL", 1);
    expectRefusal({"write", "d", "k", "--string", "\xff"},
                  "'k': a text in it is not UTF-8 or holds a NUL", 1);
    expectRefusal({"write", "d", "\xff", "--int", "1"},
                  "'\uFFFD': its key is not UTF-8 or holds a NUL", 1);
    expectOutput({"read", "d"}, "{\n  \"k\": 1\n}\n");
}

TEST_F(DefaultsValuesTest, AnUnusableConfigurationFolderIsNamed) {
    environment["XDG_CONFIG_HOME"] = file("no-folder", "");
    expectRefusal({"write", "d", "k", "--int", "1"},
                  path("no-folder/orvalo-suites") + ": Not a directory", 1);
    expectRefusal({"read", "d"}, "there is no domain 'd'.", 1);
    expectOutput({"domains"}, "");
    std::filesystem::create_directories(path("odd"));
    file("odd/orvalo-suites", "");
    environment["XDG_CONFIG_HOME"] = path("odd");
    expectRefusal({"domains"}, path("odd/orvalo-suites") + ": Not a directory", 1);
}

TEST_F(DefaultsValuesTest, ADomainThatCannotBeOpenedIsNamed) {
    // SQLite takes paths of at most 512 bytes.
    const auto far = path(std::string(250, 'x') + "/" + std::string(250, 'y'));
    environment["XDG_CONFIG_HOME"] = far;
    const auto database = far + "/orvalo-suites/d.sqlite";
    std::filesystem::create_directories(far + "/orvalo-suites");
    std::ofstream(database) << std::string(5000, 'x');
    expectRefusal({"read", "d"}, database + ": unable to open database file", 1);
    const auto circle = far + "/orvalo-suites/circle.sqlite";
    std::filesystem::create_symlink("circle.sqlite", circle);
    expectRefusal({"read", "circle"}, circle + ": Too many levels of symbolic links", 1);
}

TEST_F(DefaultsValuesTest, AWriteWithoutRoomIsNamedAndChangesNothing) {
    expectSilence({"write", "d", "k", "--int", "1"});
    const auto full = [&](const std::string& command) {
        // 102,400 bytes.
        return shell("trap '' XFSZ; ulimit -f 200; \"$D\" " + command);
    };
    const auto large = file("in", R"({"k": 2, "large": ")" + std::string(300'000, 'x') + "\"}");
    for (const auto& command : {"import d " + large, "import --replace d " + large}) {
        const auto end = full(command);
        EXPECT_EQ(end.error, "orvalo-defaults: " + path("config/orvalo-suites/d.sqlite") +
                                 ": File too large\n");
        EXPECT_EQ(end.status, 1);
        expectOutput({"read", "d"}, "{\n  \"k\": 1\n}\n");
    }
    EXPECT_EQ(full("write d k --int 3").status, 0);
    expectOutput({"read", "d"}, "{\n  \"k\": 3\n}\n");
}

TEST_F(DefaultsValuesTest, AClosedPipeEndsItAndChangesNothing) {
    // More than a pipe holds.
    expectSilence({"import", "d", file("in", R"({"k": ")" + std::string(1'000'000, 'x') + "\"}")});
    const auto before = run({"read", "d"}).output;
    // SIGPIPE ends it, as it ends other programs in a pipe.
    const auto ended = shell(R"({ "$D" read d; echo "$?" >&2; } | head -n 1)");
    EXPECT_EQ(ended.output, "{\n");
    EXPECT_EQ(ended.error, "141\n");
    const auto told = shell(R"(trap '' PIPE; { "$D" export d; echo "$?" >&2; } | head -n 1)");
    EXPECT_EQ(told.error, "orvalo-defaults: standard output: Broken pipe.\n1\n");
    EXPECT_EQ(run({"read", "d"}).output, before);
}

TEST_F(DefaultsValuesTest, AnUnusableOutputIsNamed) {
    expectSilence({"write", "d", "k", "--int", "1"});
    const auto full = shell("\"$D\" read d >/dev/full");
    EXPECT_EQ(full.error, "orvalo-defaults: standard output: No space left on device.\n");
    EXPECT_EQ(full.status, 1);
    const auto closed = shell("\"$D\" read d >&-");
    EXPECT_EQ(closed.error, "orvalo-defaults: standard output: Bad file descriptor.\n");
    EXPECT_EQ(closed.status, 1);
    // No output went into a file with the number of a closed stream.
    EXPECT_EQ(shell("\"$D\" write d k --int 2 >&- 2>&- <&-").status, 0);
    EXPECT_EQ(shell("\"$D\" read d nothing >&- 2>&- <&-").status, 1);
    expectOutput({"read", "d"}, "{\n  \"k\": 2\n}\n");
}

}  // namespace
}  // namespace orvalo::testing
