#include "platform/foundation/Bundle.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/testing/TemporaryFolder.h"

namespace orvalo {
namespace {

namespace fs = std::filesystem;

class BundleTest : public ::testing::Test {
  protected:
    fs::path resources() const { return folder_.path() / "share/orvalo"; }

    orvalo::testing::TemporaryFolder folder_;
    Bundle bundle_{URL::fileURLWithPath(folder_.path().string())};
};

TEST_F(BundleTest, HasResourcesOnlyWhenTheFolderExists) {
    EXPECT_EQ(bundle_.resourceURL(), std::nullopt);
    fs::create_directories(folder_.path() / "share");
    std::ofstream(resources()) << "a file";
    EXPECT_EQ(bundle_.resourceURL(), std::nullopt);
    fs::remove(resources());
    fs::create_directories(resources());
    EXPECT_EQ(bundle_.resourceURL(), URL::fileURLWithPath(resources().string()));
}

TEST_F(BundleTest, FindsAResourceFileByNameAndExtension) {
    EXPECT_EQ(bundle_.url("37", "m4a"), std::nullopt);
    fs::create_directories(resources() / "folder.m4a");
    std::ofstream(resources() / "37.m4a") << "sound";
    EXPECT_EQ(bundle_.url("37", "m4a"), URL::fileURLWithPath((resources() / "37.m4a").string()));
    EXPECT_EQ(bundle_.url("37", "wav"), std::nullopt);
    EXPECT_EQ(bundle_.url("38", "m4a"), std::nullopt);
    EXPECT_EQ(bundle_.url("folder", "m4a"), std::nullopt);
}

TEST_F(BundleTest, ReturnsTheEffectsFolderEvenIfItIsMissing) {
    EXPECT_EQ(bundle_.effectsURL().path(), (folder_.path() / "lib/lv2").string());
}

TEST_F(BundleTest, ReturnsAHelperProgramEvenIfItIsMissing) {
    EXPECT_EQ(bundle_.helperURL("servant").path(),
              (folder_.path() / "libexec/orvalo/servant").string());
}

TEST(MainBundle, IsFoundFromTheRunningProgram) {
    const auto program = fs::canonical("/proc/self/exe");
    const auto prefix = program.parent_path().parent_path();
    EXPECT_EQ(Bundle::main()->effectsURL().path(), (prefix / "lib/lv2").string());
    EXPECT_EQ(Bundle::main(), Bundle::main());
}

}  // namespace
}  // namespace orvalo
