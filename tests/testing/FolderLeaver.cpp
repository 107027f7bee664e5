// Tests that leave temporary folders behind in different ways; check-left-folders runs them.

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

#include "tests/testing/TemporaryFolder.h"

namespace {

using orvalo::testing::TemporaryFolder;

[[noreturn]] void dieWithFolder() {
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "left";
    std::abort();
}

TEST(FolderLeaver, DiesInADeathTest) {
    EXPECT_EXIT(dieWithFolder(), ::testing::KilledBySignal(SIGABRT), "");
}

TEST(FolderLeaver, DiesInADeathTestBesideAFolder) {
    const TemporaryFolder folder;
    EXPECT_EXIT(dieWithFolder(), ::testing::KilledBySignal(SIGABRT), "");
    EXPECT_TRUE(std::filesystem::is_directory(folder.path()));
}

TEST(FolderLeaver, Fails) {
    new TemporaryFolder;  // Stays: its destructor does not run.
    FAIL() << "as it is meant to";
}

}  // namespace
