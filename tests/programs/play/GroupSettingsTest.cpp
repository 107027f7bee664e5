#include <filesystem>
#include <fstream>

#include "tests/programs/play/PlayFixture.h"

namespace orvalo::testing {

namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

constexpr auto kCodes =
    "@prefix ac: <urn:tessaly:audio-component#> .\n"
    "<urn:orvalo:hostile> ac:type \"aumf\" ; ac:subtype \"orVL\" ; "
    "ac:manufacturer \"TSLY\" ; ac:flags 2 ; ac:name \"Group: Test\" .\n";

class GroupSettingsTest : public PlayFixture {
  protected:
    /// Runs the hostile effect, whose manifest also has the given statements.
    End runHostile(const std::string& statements, const std::vector<std::string>& options) {
        const auto bundle = folder.path() / "lv2/hostile.lv2";
        fs::create_directories(bundle);
        fs::create_directories(other_.parent_path());
        std::ofstream(bundle / "manifest.ttl")
            << std::ifstream(ORVALO_HOSTILE "/manifest.ttl").rdbuf() << statements;
        fs::create_symlink(ORVALO_HOSTILE "/hostile.so", bundle / "hostile.so");
        std::ofstream(bundle / "targets")
            << "group " << group_.string() << "\nother " << other_.string() << "\n";
        environment["LV2_PATH"] = bundle.parent_path();
        environment["XDG_CONFIG_HOME"] = settings_;
        environment["ORVALO_EFFECT_LOADING"] = "out-of-process";
        std::vector<std::string> arguments{"--file", wav("music.wav", 48000, 100), "--render",
                                           (folder.path() / "out.wav").string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments);
    }

    const fs::path settings_ = folder.path() / "settings";
    const fs::path group_ = settings_ / "orvalo-suites/group.com.Tessaly.audio.sqlite";
    const fs::path other_ = settings_ / "com.tessaly.Orvalo/defaults.sqlite";
};

TEST_F(GroupSettingsTest, AnEffectWithTheManufacturersCodeMayUseThem) {
    const auto end = runHostile(kCodes, {});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.error, HasSubstr("<urn:orvalo:hostile>: write the group's settings: done\n"));
    EXPECT_THAT(end.error, HasSubstr("<urn:orvalo:hostile>: write other settings: E"));
    EXPECT_TRUE(fs::exists(group_));
    EXPECT_FALSE(fs::exists(other_));
}

TEST_F(GroupSettingsTest, AnEffectThatIsOnlyNamedMayNotUseThem) {
    const auto end = runHostile("", {"--effect", "urn:orvalo:hostile"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.error, HasSubstr("<urn:orvalo:hostile>: write the group's settings: E"));
    EXPECT_FALSE(fs::exists(group_));
}

TEST_F(GroupSettingsTest, AnEffectThatIsNamedKeepsWhatItsCodesAllow) {
    const auto end = runHostile(kCodes, {"--effect", "urn:orvalo:hostile"});
    EXPECT_EQ(end.status, 0);
    EXPECT_THAT(end.error, HasSubstr("<urn:orvalo:hostile>: write the group's settings: done\n"));
    EXPECT_TRUE(fs::exists(group_));
}

}  // namespace

}  // namespace orvalo::testing
