#include "platform/foundation/UserFolders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

namespace orvalo {
namespace {

namespace fs = std::filesystem;

using Folder = fs::path (*)();

/// Prints the folder to standard error under that environment and ends the process.
[[noreturn]] void report(Folder folder, const char* variable, const char* value) {
    setenv("HOME", "/home/user", 1);
    setenv(variable, value, 1);
    std::cerr << folder().string();
    std::_Exit(0);
}

void expectFolder(Folder folder, const char* variable, const std::string& inHome) {
    EXPECT_EXIT(report(folder, variable, "/elsewhere"), ::testing::ExitedWithCode(0),
                "^/elsewhere$");
    EXPECT_EXIT(report(folder, variable, ""), ::testing::ExitedWithCode(0),
                "^/home/user/" + inHome + "$");
    EXPECT_EXIT(report(folder, variable, "elsewhere"), ::testing::ExitedWithCode(0),
                "^/home/user/" + inHome + "$");
}

TEST(UserFoldersDeathTest, ConfigurationFolderIgnoresARelativePath) {
    expectFolder(userConfigurationFolder, "XDG_CONFIG_HOME", "\\.config");
}

TEST(UserFoldersDeathTest, DataFolderIgnoresARelativePath) {
    expectFolder(userDataFolder, "XDG_DATA_HOME", "\\.local/share");
}

TEST(UserFoldersDeathTest, CacheFolderIgnoresARelativePath) {
    expectFolder(userCacheFolder, "XDG_CACHE_HOME", "\\.cache");
}

}  // namespace
}  // namespace orvalo
