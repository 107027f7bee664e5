#include "platform/foundation/FileManager.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <thread>

#include "platform/foundation/NSError.h"
#include "tests/testing/ProgramFolder.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo {
namespace {

namespace fs = std::filesystem;

class FileManagerTest : public ::testing::Test {
  protected:
    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }

    static std::optional<NSError> failureOfCreating(const URL& url, bool withParents) {
        try {
            FileManager::default_().createDirectory(url, withParents);
            return std::nullopt;
        } catch (const NSError& error) {
            return error;
        }
    }

    std::optional<NSError> failureOfCreating(const std::string& name, bool withParents) const {
        return failureOfCreating(URL::fileURLWithPath(path(name)), withParents);
    }

    orvalo::testing::TemporaryFolder folder_;
    FileManager& files_ = FileManager::default_();
};

TEST_F(FileManagerTest, FindsItemsOfEveryKind) {
    EXPECT_FALSE(files_.fileExists(path("nothing")));
    EXPECT_FALSE(files_.fileExists(""));
    EXPECT_TRUE(files_.fileExists(folder_.path().string()));
    std::ofstream(path("file")) << "x";
    EXPECT_TRUE(files_.fileExists(path("file")));
    fs::create_symlink(path("file"), path("link"));
    EXPECT_TRUE(files_.fileExists(path("link")));
    fs::remove(path("file"));
    EXPECT_FALSE(files_.fileExists(path("link")));
}

TEST_F(FileManagerTest, CreatesADirectoryWithItsParents) {
    EXPECT_EQ(failureOfCreating("a/b c/d", true), std::nullopt);
    EXPECT_TRUE(fs::is_directory(path("a/b c/d")));
    EXPECT_EQ(failureOfCreating("a/b c/d", true), std::nullopt);
}

TEST_F(FileManagerTest, CreatesADirectoryWithTheDefaultPermissions) {
    const auto before = umask(027);
    EXPECT_EQ(failureOfCreating("new", true), std::nullopt);
    umask(before);
    EXPECT_EQ(fs::status(path("new")).permissions(), fs::perms(0750));
}

TEST_F(FileManagerTest, FailsWithoutParentsOrForAnExistingDirectory) {
    const auto orphan = failureOfCreating("a/b", false);
    ASSERT_TRUE(orphan);
    EXPECT_EQ(orphan->localizedDescription(), path("a/b") + ": No such file or directory");
    EXPECT_EQ(failureOfCreating("a", false), std::nullopt);
    const auto second = failureOfCreating("a", false);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->localizedDescription(), path("a") + ": File exists");
}

TEST_F(FileManagerTest, ReportsThatAParentIsAFile) {
    std::ofstream(path("file")) << "x";
    const auto error = failureOfCreating("file/below", true);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->domain(), "NSPOSIXErrorDomain");
    EXPECT_EQ(error->code(), ENOTDIR);
    EXPECT_EQ(error->localizedDescription(), path("file/below") + ": Not a directory");
}

TEST_F(FileManagerTest, ReportsMissingPermission) {
    fs::permissions(folder_.path(), fs::perms(0555));
    std::optional<NSError> error;
    std::thread([&] {
        // The system call changes one thread only, setresuid() all threads.
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0) {
            syscall(SYS_setresuid, -1, nobody, -1);
        }
        error = failureOfCreating("a/b", true);
    }).join();
    fs::permissions(folder_.path(), fs::perms(0755));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), EACCES);
    EXPECT_EQ(error->localizedDescription(), path("a/b") + ": Permission denied");
}

TEST_F(FileManagerTest, CreatesNothingOnTheWeb) {
    const auto error = failureOfCreating(*URL::string("https://example.org/a"), true);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->localizedDescription(), "https://example.org/a: Invalid argument");
}

/// Prints the documents directory for that user-dirs.dirs to standard error and ends the process.
[[noreturn]] void reportDocuments(const std::string& settings) {
    const auto home = orvalo::testing::ProgramFolder::makeFolder() / "home";
    fs::create_directories(home / "settings");
    std::ofstream(home / "settings/user-dirs.dirs") << settings;
    setenv("HOME", home.c_str(), 1);
    setenv("XDG_CONFIG_HOME", (home / "settings").c_str(), 1);
    const auto urls = FileManager::default_().urls(SearchPathDirectory::documentDirectory,
                                                   SearchPathDomainMask::userDomainMask);
    for (const auto& url : urls) {
        std::cerr << url.path() << '\n';
    }
    std::_Exit(0);
}

TEST(DocumentsDeathTest, AreTheDesktopsDocumentsFolder) {
    EXPECT_EXIT(reportDocuments("XDG_DOCUMENTS_DIR=\"$HOME/My Texts\"\n"),
                ::testing::ExitedWithCode(0), "^/.*/home/My Texts\n$");
}

TEST(DocumentsDeathTest, DefaultToTheHomeDirectory) {
    EXPECT_EXIT(reportDocuments(""), ::testing::ExitedWithCode(0), "^/.*/home\n$");
}

}  // namespace
}  // namespace orvalo
