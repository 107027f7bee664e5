#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "programs/defaults/format/JSONForm.h"
#include "tests/programs/defaults/ToolFixture.h"

namespace orvalo::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class DefaultsImportTest : public ToolFixture {
  protected:
    DefaultsImportTest() {
        expectSilence({"write", "d", "kept", "--int", "1"});
        expectSilence({"write", "d", "set", "--int", "2"});
    }

    void expectUnchanged() const {
        expectOutput({"read", "d"}, "{\n  \"kept\": 1,\n  \"set\": 2\n}\n");
    }
    /// The import is refused with the line and changes nothing, with --replace too.
    void expectRefused(const std::string& text, const std::string& line) const {
        for (const auto& arguments :
             {std::vector<std::string>{}, std::vector<std::string>{"--replace"}}) {
            std::vector<std::string> all{"import", "d", file("in", text)};
            all.insert(all.end(), arguments.begin(), arguments.end());
            expectRefusal(all, line, 1);
            expectUnchanged();
        }
    }
};

TEST_F(DefaultsImportTest, OtherKeysAreUnchanged) {
    expectSilence({"import", "d", file("in", R"({"new": "x", "set": true})")});
    expectOutput({"read", "d"}, "{\n  \"kept\": 1,\n  \"new\": \"x\",\n  \"set\": true\n}\n");
}

TEST_F(DefaultsImportTest, ReplaceRemovesOtherKeys) {
    expectSilence({"import", "--replace", "d", file("in", R"({"new": "x", "set": 2})")});
    expectOutput({"read", "d"}, "{\n  \"new\": \"x\",\n  \"set\": 2\n}\n");
    expectSilence({"import", "--replace", "d", file("in", "{}")});
    expectOutput({"read", "d"}, "{}\n");
}

TEST_F(DefaultsImportTest, WithoutAFileItReadsStandardInput) {
    EXPECT_EQ(shell(R"(echo '{"set": 3}' | "$D" import d)").status, 0);
    expectOutput({"read", "d", "set"}, "3\n");
    EXPECT_EQ(shell(R"(echo '{"set": 4.0}' | "$D" import d -)").status, 0);
    expectOutput({"read", "d", "set"}, "4.0\n");
    const auto bad = shell(R"(echo '[]' | "$D" import d)");
    EXPECT_EQ(bad.error,
              "orvalo-defaults: standard input: it holds no object of keys and values.\n");
    EXPECT_EQ(bad.status, 1);
    // The rest is the JSON library's text, which depends on its version.
    EXPECT_THAT(shell(R"("$D" import d <&-)").error,
                StartsWith("orvalo-defaults: standard input: line 1, column 1: "));
}

TEST_F(DefaultsImportTest, AFileThatIsNotJSONIsRefusedWithItsLine) {
    const auto end = run({"import", "d", file("in", "{\n  \"a\": 1,\n  \"b\": oops\n}")});
    EXPECT_THAT(end.error, StartsWith("orvalo-defaults: " + path("in") + ": line 3, column "));
    EXPECT_EQ(end.error.find('\n'), end.error.size() - 1);
    EXPECT_EQ(end.status, 1);
    EXPECT_THAT(run({"import", "d", file("in\x1b", "x")}).error,
                StartsWith("orvalo-defaults: " + path("in\\u001b") + ": line 1, column 1: "));
    expectUnchanged();
    expectRefused(R"({"new": 1, "set": null})",
                  path("in") + ": 'set': null is no value of a domain.");
    expectRefused(R"({"a\nb": null})", path("in") + R"(: 'a\nb': null is no value of a domain.)");
    EXPECT_EQ(run({"import", "d", file("in", "")}).status, 1);
    EXPECT_EQ(run({"import", "d", file("in", "bplist00\xd1\x01")}).status, 1);
    EXPECT_EQ(run({"import", "d", file("in", "\x1f\x8b\x08")}).status, 1);
    expectUnchanged();
}

TEST_F(DefaultsImportTest, OneRefusedValueRefusesTheWholeImport) {
    expectRefused(R"({"a": 1, "set": "b\u0000", "z": 2})",
                  "'set': a text in it is not UTF-8 or holds a NUL");
    expectRefused(R"({"a": 1, "x": {"\u001b\u0000": 2}})",
                  "'x': a text in it is not UTF-8 or holds a NUL");
    expectRefused(R"({"a": 1, "deep": )" + std::string(150, '[') + std::string(150, ']') + "}",
                  "'deep': it is nested too deeply");
    std::string huge;
    huge.resize(17'000'000, 'x');
    expectRefused(R"({"a": 1, "huge": ")" + huge + "\"}", "'huge': it is larger than 16 MB");
}

TEST_F(DefaultsImportTest, ARefusedImportCreatesNoDomain) {
    EXPECT_EQ(run({"import", "new", file("in", "{")}).status, 1);
    EXPECT_EQ(run({"import", "new", file("in", R"({"a": "\u0000"})")}).status, 1);
    expectOutput({"domains"}, "d\n");
}

TEST_F(DefaultsImportTest, AFileThatCannotBeReadIsNamed) {
    for (const auto& [name, reason] : std::vector<std::pair<std::string, std::string>>{
             {"none", "No such file or directory"}, {"", "Is a directory"}}) {
        const auto end = run({"import", "d", path(name)});
        EXPECT_THAT(end.error, HasSubstr(path(name)));
        EXPECT_THAT(end.error, HasSubstr(reason));
        EXPECT_EQ(end.status, 1);
    }
    expectUnchanged();
}

/// The JSON text of a domain of that many keys, all with the same value.
std::string uniform(int keys, int value) {
    PropertyList::Dictionary entries;
    for (int key = 0; key < keys; ++key) {
        entries.emplace("key " + std::to_string(key), value);
    }
    return jsonText(entries);
}

TEST_F(DefaultsImportTest, SimultaneousImportsAreNeverMixed) {
    constexpr int kKeys = 200;
    constexpr int kWriters = 3;
    constexpr int kRounds = 15;
    std::vector<std::string> states;
    states.reserve(kWriters);
    for (int writer = 0; writer < kWriters; ++writer) {
        states.push_back(uniform(kKeys + writer, writer) + "\n");
        file("in" + std::to_string(writer), states.back());
    }
    expectSilence({"import", "--replace", "d", path("in0")});
    std::vector<std::unique_ptr<Program>> writers;
    for (int writer = 0; writer < kWriters; ++writer) {
        const auto line = "for i in $(seq " + std::to_string(kRounds) +
                          "); do \"$D\" import --replace d " + path("in" + std::to_string(writer)) +
                          " || exit 1; done; echo done";
        writers.push_back(std::make_unique<Program>(std::vector<std::string>{"/bin/sh", "-c", line},
                                                    environment));
    }
    for (int round = 0; round < kRounds; ++round) {
        const auto read = run({"read", "d"});
        EXPECT_EQ(read.error, "");
        EXPECT_THAT(states, ::testing::Contains(read.output));
    }
    for (const auto& writer : writers) {
        EXPECT_THAT(writer->readAll(), ::testing::ElementsAre("done"));
        EXPECT_EQ(writer->wait(), 0);
        EXPECT_EQ(writer->standardError(), "");
    }
    EXPECT_THAT(states, ::testing::Contains(run({"read", "d"}).output));
}

}  // namespace
}  // namespace orvalo::testing
