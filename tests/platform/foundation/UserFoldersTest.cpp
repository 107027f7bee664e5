#include "platform/foundation/UserFolders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "tests/testing/ProgramFolder.h"

namespace orvalo {
namespace {

namespace fs = std::filesystem;

using Folder = fs::path (*)();

/// Ends the process with the folder on standard error, as a user has it whose environment says so.
[[noreturn]] void report(Folder folder, const char* variable, const char* value) {
    // NOLINTBEGIN(concurrency-mt-unsafe): the process has one thread.
    setenv("HOME", "/home/user", 1);
    setenv(variable, value, 1);
    // NOLINTEND(concurrency-mt-unsafe)
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

TEST(UserFoldersDeathTest, ForTheConfigurationIsWhereAnAbsolutePathSays) {
    expectFolder(userConfigurationFolder, "XDG_CONFIG_HOME", "\\.config");
}

TEST(UserFoldersDeathTest, ForDataIsWhereAnAbsolutePathSays) {
    expectFolder(userDataFolder, "XDG_DATA_HOME", "\\.local/share");
}

TEST(UserFoldersDeathTest, ForCachesIsWhereAnAbsolutePathSays) {
    expectFolder(userCacheFolder, "XDG_CACHE_HOME", "\\.cache");
}

void writeFolders(const fs::path& configuration, const std::string& text) {
    fs::create_directories(configuration);
    std::ofstream(configuration / "user-dirs.dirs") << text;
}

/// Ends the process with the documents' folder that a user has with this file in ~/.config, and one
/// with other words in the working folder, where a path that is not absolute leads.
[[noreturn]] void reportDocuments(const std::string& folders) {
    const auto home = orvalo::testing::ProgramFolder::makeFolder() / "home";
    writeFolders(home / ".config", folders);
    writeFolders(home / "elsewhere", "XDG_DOCUMENTS_DIR=\"/misled\"\n");
    fs::current_path(home);
    // NOLINTBEGIN(concurrency-mt-unsafe): the process has one thread.
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_CONFIG_HOME", "elsewhere", 1);
    // NOLINTEND(concurrency-mt-unsafe)
    std::cerr << userDocumentsFolder().value_or("none").string();
    std::_Exit(0);
}

void expectDocuments(const std::string& folders, const std::string& expected) {
    EXPECT_EXIT(reportDocuments(folders), ::testing::ExitedWithCode(0), "^" + expected + "$")
        << folders;
}

TEST(UserFoldersDeathTest, ForDocumentsIsWhatTheUsersOwnConfigurationNames) {
    expectDocuments(
        "# XDG_DOCUMENTS_DIR=\"/no\"\nXDG_MUSIC_DIR=\"/no\"\n"
        " XDG_DOCUMENTS_DIR=\"$HOME/My Texts\"\n",
        "/.*/home/My Texts");
    expectDocuments(R"(XDG_DOCUMENTS_DIR="/srv/\"texts\"/")", "/srv/\"texts\"");
    expectDocuments("XDG_DOCUMENTS_DIR=\"/first\"\nXDG_DOCUMENTS_DIR=\"/last\"\n", "/last");
}

TEST(UserFoldersDeathTest, ForDocumentsMayBeTheHome) {
    expectDocuments("XDG_DOCUMENTS_DIR=\"$HOME/\"\n", "/.*/home");
    expectDocuments("XDG_DOCUMENTS_DIR=\"$HOME\"\n", "/.*/home");
}

TEST(UserFoldersDeathTest, ForDocumentsIsNoneWhereNoneIsNamed) {
    expectDocuments("", "none");
    expectDocuments("XDG_DOCUMENTS_DIR=\"texts\"\n", "none");
    expectDocuments("XDG_DOCUMENTS_DIR=\"$HOMETOWN\"\n", "none");
    expectDocuments("XDG_DOCUMENTS_DIR=\"/unfinished\n", "none");
}

}  // namespace
}  // namespace orvalo
