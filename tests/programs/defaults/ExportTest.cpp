#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "programs/defaults/format/JSONForm.h"
#include "tests/programs/defaults/FormFixtures.h"
#include "tests/programs/defaults/ToolFixture.h"
#include "tests/testing/FileBytes.h"

namespace orvalo::testing {
namespace {

namespace fs = std::filesystem;

class DefaultsExportTest : public ToolFixture {
  protected:
    DefaultsExportTest() { expectSilence({"write", "d", "k", "--float", "1"}); }

    const std::string json = "{\n  \"k\": 1.0\n}\n";
};

TEST_F(DefaultsExportTest, WithoutAFileItWritesToStandardOutput) {
    expectOutput({"export", "d"}, json);
    expectOutput({"export", "d", "-"}, json);
}

TEST_F(DefaultsExportTest, TheFileIsPrivateToItsOwner) {
    file("there", "before");
    for (const std::string name : {"there", "new"}) {
        expectSilence({"export", "d", path(name)});
        EXPECT_EQ(fs::status(path(name)).permissions(),
                  fs::perms::owner_read | fs::perms::owner_write);
    }
}

TEST_F(DefaultsExportTest, ALinkIsFollowed) {
    fs::create_symlink("target", path("link"));
    file("target", "before");
    expectSilence({"export", "d", path("link")});
    EXPECT_TRUE(fs::is_symlink(path("link")));
    EXPECT_EQ(bytesOf(path("target")), json);
}

TEST_F(DefaultsExportTest, AFileThatCannotBeWrittenIsNamedAndUntouched) {
    const auto end = run({"export", "d", path("no/such")});
    EXPECT_THAT(end.error, ::testing::HasSubstr(path("no/such")));
    EXPECT_THAT(end.error, ::testing::HasSubstr("No such file or directory"));
    EXPECT_EQ(end.status, 1);
    expectRefusal({"export", "d", folder.path().string()},
                  folder.path().string() + ": This is no regular file.", 1);
    expectRefusal({"export", "d", "/dev/full"}, "/dev/full: This is no regular file.", 1);
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST_F(DefaultsExportTest, AFileWithoutRoomIsUnchanged) {
    fs::create_directories(path("place"));
    file("place/out", "before");
    expectSilence({"import", "d", file("in", R"({"k": ")" + std::string(300'000, 'x') + "\"}")});
    // 102,400 bytes.
    const auto end = shell(R"(trap '' XFSZ; ulimit -f 200; "$D" export d )" + path("place/out"));
    EXPECT_THAT(end.error, ::testing::HasSubstr(path("place/out")));
    EXPECT_THAT(end.error, ::testing::HasSubstr("File too large"));
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(bytesOf(path("place/out")), "before");
    EXPECT_EQ(std::distance(fs::directory_iterator(path("place")), {}), 1);
}

class DefaultsRoundTripTest : public ToolFixture {};

TEST_F(DefaultsRoundTripTest, EveryKindIsUnchangedThroughStoreAndFile) {
    const auto json = jsonText(everyKind()) + "\n";
    expectSilence({"import", "a", file("in.json", json)});
    expectSilence({"export", "a", path("out.json")});
    expectSilence({"import", "b", path("out.json")});
    expectOutput({"export", "b"}, json);
    expectOutput({"read", "b"}, json);
}

}  // namespace
}  // namespace orvalo::testing
