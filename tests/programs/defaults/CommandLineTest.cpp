#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/programs/defaults/ToolFixture.h"

namespace orvalo::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class DefaultsCommandLineTest : public ToolFixture {
  protected:
    void expectBad(const std::vector<std::string>& arguments, const std::string& line) const {
        expectRefusal(arguments, line, 2);
    }
};

TEST_F(DefaultsCommandLineTest, HelpNamesEveryCommandAndOption) {
    const auto end = run({"--help"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.output, StartsWith("Usage:\n  orvalo-defaults "));
    for (const auto* command :
         {"domains ", "list DOMAIN", "read DOMAIN [KEY]", "write DOMAIN KEY", "delete DOMAIN KEY",
          "export DOMAIN [FILE]", "import DOMAIN [FILE]", "--raw", "--string=TEXT", "--int=N",
          "--float=N", "--bool=true|false", "--date=DATE", "--data=BASE64", "--json=JSON", "--all",
          "--replace", "--version"}) {
        EXPECT_THAT(end.output, HasSubstr(std::string("\n  ") + command));
    }
    EXPECT_EQ(run({"read", "-h"}).output, end.output);
}

TEST_F(DefaultsCommandLineTest, TheVersionIsOneLine) {
    expectOutput({"--version"}, "orvalo-defaults " ORVALO_VERSION "\n");
}

TEST_F(DefaultsCommandLineTest, ABadCommandLineIsRefusedWithOneLine) {
    expectBad({}, "a command is missing; see orvalo-defaults --help.");
    expectBad({"frob\x1b"}, "'frob\\u001b' is no command; see orvalo-defaults --help.");
    expectBad({"domains", "d"}, "domains wants no arguments.");
    expectBad({"list"}, "list wants DOMAIN.");
    expectBad({"list", "d", "k"}, "list wants DOMAIN.");
    expectBad({"read"}, "read wants DOMAIN [KEY].");
    expectBad({"read", "--raw", "d"}, "--raw wants a key.");
    expectBad({"write", "d", "--int", "5"}, "write wants DOMAIN KEY.");
    expectBad({"write", "d", "k", "5"}, "write wants DOMAIN KEY.");
    expectBad({"write", "d", "k", "--int"}, "Missing argument for --int.");
    expectBad({"write", "d", "k", "--loudly"}, "Unknown option --loudly.");
    expectBad({"write", "d", "k", "--x\x1b"}, "Unknown option --x\\u001b.");
    expectBad({"delete", "d"}, "delete wants either a key or --all.");
    expectBad({"delete", "d", "k", "--all"}, "delete wants either a key or --all.");
    expectBad({"read", "d", "--all"}, "read has no option --all.");
    expectBad({"export", "d", ""}, "export wants a file name, not an empty one.");
    expectBad({"import", "d", ""}, "import wants a file name, not an empty one.");
}

TEST_F(DefaultsCommandLineTest, WriteRequiresExactlyOneType) {
    const auto* line =
        "write wants exactly one of --string, --int, --float, --bool, --date, --data and --json.";
    expectBad({"write", "d", "k"}, line);
    expectBad({"write", "d", "k", "--int", "1", "--float", "1"}, line);
}

TEST_F(DefaultsCommandLineTest, AValueOfAnotherTypeIsRefused) {
    expectBad({"write", "d", "k", "--int", "5x"},
              "--int wants a whole number of 64 bits, not '5x'.");
    expectBad({"write", "d", "k", "--int", "9223372036854775808"},
              "--int wants a whole number of 64 bits, not '9223372036854775808'.");
    expectBad({"write", "d", "k", "--float", "1e400"},
              "--float wants a number of double precision, inf, -inf or nan, not '1e400'.");
    expectBad({"write", "d", "k", "--bool", "maybe"}, "--bool wants true or false, not 'maybe'.");
    expectBad({"write", "d", "k", "--date", "today"},
              "--date wants a date such as 2026-11-21T08:30:00Z, not 'today'.");
    expectBad({"write", "d", "k", "--data", "?"}, "--data wants data in Base64, not '?'.");
    expectBad({"write", "d", "k", "--json", "[null]"}, "--json: null is no value of a domain.");
    expectBad({"write", "d", "k", "--int", std::string(1000, '9')},
              "--int wants a whole number of 64 bits, not '" + std::string(60, '9') + "...'.");
}

TEST_F(DefaultsCommandLineTest, BadDomainNamesAreRefused) {
    expectBad({"read", ""}, "A suite needs a name.");
    expectBad({"read", "a/b"}, "The suite name 'a/b' is a path.");
    expectBad({"read", "a/\x1b"}, "The suite name 'a/\\u001b' is a path.");
    expectBad({"write", "..", "k", "--int", "1"}, "The suite name '..' is a path.");
    expectBad({"read", "\xff"}, "A suite's name is not UTF-8 text.");
}

TEST_F(DefaultsCommandLineTest, TwoHyphensEndTheOptions) {
    expectSilence({"write", "d", "--int=-5", "--", "--raw"});
    expectOutput({"read", "d", "--", "--raw"}, "-5\n");
}

TEST_F(DefaultsCommandLineTest, TextIsUTF8InEveryLocale) {
    environment["LC_ALL"] = "C";
    expectSilence({"write", "d", "Größe", "--string", "groß"});
    expectOutput({"read", "d"}, "{\n  \"Größe\": \"groß\"\n}\n");
}

}  // namespace
}  // namespace orvalo::testing
