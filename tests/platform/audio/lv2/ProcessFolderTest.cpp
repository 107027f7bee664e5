#include "platform/audio/lv2/ProcessFolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "platform/foundation/NSError.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
namespace fs = std::filesystem;

/// Each test has a new temporary folder.
class ProcessFolderTest : public ::testing::Test {
  protected:
    // The process has one thread.
    ProcessFolderTest() { setenv("TMPDIR", place_.path().c_str(), 1); }
    ~ProcessFolderTest() override {
        if (before_.empty()) {
            unsetenv("TMPDIR");
        } else {
            setenv("TMPDIR", before_.c_str(), 1);
        }
    }

    static std::string now() {
        const char* value = std::getenv("TMPDIR");
        return value == nullptr ? "" : value;
    }

    /// The number of entries in the temporary folder.
    static std::ptrdiff_t count() {
        return std::distance(fs::directory_iterator(now()), fs::directory_iterator());
    }

    /// Forks a process that creates a folder with a file in it and ends.
    template <typename End>
    static void makeElsewhere(End end) {
        const pid_t process = fork();
        if (process == 0) {
            const ProcessFolder folder("kind");
            std::ofstream(folder.path() / "file") << "text";
            end();
            _exit(1);
        }
        int status = 0;
        waitpid(process, &status, 0);
    }

    const std::string before_ = now();
    const TemporaryFolder place_;
};

TEST_F(ProcessFolderTest, IsRemovedWithItsContentsByTheDestructor) {
    {
        const ProcessFolder folder("kind");
        EXPECT_EQ(folder.path().parent_path(), place_.path());
        EXPECT_TRUE(folder.path().filename().string().starts_with("kind-"));
        EXPECT_EQ(fs::status(folder.path()).permissions(), fs::perms::owner_all);
        std::ofstream(folder.path() / "file") << "text";
    }
    EXPECT_EQ(count(), 0);
}

TEST_F(ProcessFolderTest, IsRemovedWhenTheProcessExits) {
    makeElsewhere([] { std::exit(0); });
    EXPECT_EQ(count(), 0);
}

TEST_F(ProcessFolderTest, StaysWhenAForkedProcessExits) {
    const ProcessFolder folder("kind");
    if (const pid_t process = fork(); process == 0) {
        std::exit(0);
    } else {
        waitpid(process, nullptr, 0);
    }
    EXPECT_TRUE(fs::exists(folder.path()));
}

TEST_F(ProcessFolderTest, OfAKilledProcessIsRemovedByTheNextOfItsKind) {
    makeElsewhere([] { raise(SIGKILL); });
    EXPECT_EQ(count(), 1);
    const ProcessFolder other("another");
    EXPECT_EQ(count(), 2);
    const ProcessFolder next("kind");
    EXPECT_EQ(count(), 2);
    EXPECT_TRUE(fs::exists(next.path()));
}

TEST_F(ProcessFolderTest, KeepsFoldersInUseAndOtherFiles) {
    const ProcessFolder first("kind");
    std::ofstream(place_.path() / "kind-file") << "text";
    fs::create_directory_symlink(place_.path() / "nowhere", place_.path() / "kind-link");
    const ProcessFolder second("kind");
    EXPECT_TRUE(fs::exists(first.path()));
    EXPECT_TRUE(fs::exists(second.path()));
    EXPECT_EQ(count(), 4);
}

TEST_F(ProcessFolderTest, ThrowsAnErrorWithThePath) {
    setenv("TMPDIR", "/proc", 1);
    try {
        const ProcessFolder folder("kind");
        FAIL() << folder.path();
    } catch (const NSError& error) {
        EXPECT_EQ(std::string(error.what()).substr(0, 11), "/proc/kind-") << error.what();
    }
    const auto missing = (place_.path() / "missing").string();
    setenv("TMPDIR", missing.c_str(), 1);
    try {
        const ProcessFolder folder("kind");
        FAIL() << folder.path();
    } catch (const NSError& error) {
        EXPECT_EQ(std::string(error.what()).substr(0, missing.size()), missing) << error.what();
        EXPECT_EQ(error.code(), ENOENT);
    }
}

}  // namespace
