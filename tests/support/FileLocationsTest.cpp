#include "support/FileLocations.h"

#include <glib.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "tests/testing/MainQueue.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

namespace fs = std::filesystem;

URL url(const fs::path& path) {
    return URL::fileURLWithPath(path.string());
}

// Read before main(), before any assignment.
const std::string containerAtStart = sharedContainer;
const std::vector<std::optional<URL>> locationsAtStart{documentsURL, resourcesURL, sharedURLAudio,
                                                       sharedURLMIDI};

TEST(FileLocations, StartAsDeclared) {
    EXPECT_EQ(containerAtStart, "group.com.Tessaly.audio");
    EXPECT_EQ(locationsAtStart, std::vector<std::optional<URL>>(4));
}

TEST(FileLocations, GetPathsSetsBothAndLogsAfterItsReturn) {
    // The desktop's documents folder, else the home directory.
    const char* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
    const std::string documentsPath = documents != nullptr ? documents : g_get_home_dir();
    const auto resourcesPath =
        (fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "share/orvalo").string();

    for (int run = 0; run < 2; ++run) {
        documentsURL = std::nullopt;
        resourcesURL = url("/elsewhere");
        const CapturedOutput output;
        getPaths();
        EXPECT_EQ(output.text(), "");
        EXPECT_EQ(documentsURL, url(documentsPath));
        EXPECT_EQ(resourcesURL, url(resourcesPath));
        drainMainQueue();
        EXPECT_EQ(output.lines(),
                  Lines({"AudioUnitViewController::getPaths() : Audio Unit's documents path is: " +
                             documentsPath,
                         "AudioUnitViewController::getPaths() : Audio Unit's resources path is: " +
                             resourcesPath}));
    }
    EXPECT_EQ(sharedURLAudio, std::nullopt);
    EXPECT_EQ(sharedURLMIDI, std::nullopt);
}

TEST(EnsureDirectoryExists, LeavesAnExistingDirectoryAlone) {
    const TemporaryFolder folder;
    const CapturedOutput output;
    EXPECT_TRUE(ensureDirectoryExists(url(folder.path())));
    EXPECT_TRUE(fs::is_empty(folder.path()));
    drainMainQueue();
    EXPECT_EQ(output.text(), "");
}

TEST(EnsureDirectoryExists, AcceptsAPlainFile) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "item";
    std::ofstream(file) << "kept";
    const CapturedOutput output;
    EXPECT_TRUE(ensureDirectoryExists(url(file)));
    EXPECT_TRUE(fs::is_regular_file(file));
    EXPECT_EQ(fs::file_size(file), 4U);
    drainMainQueue();
    EXPECT_EQ(output.text(), "");
}

TEST(EnsureDirectoryExists, CreatesMissingParents) {
    const TemporaryFolder folder;
    const auto path = folder.path() / "a/b ü/c";
    const CapturedOutput output;
    const auto mask = umask(022);
    EXPECT_TRUE(ensureDirectoryExists(url(path)));
    umask(mask);
    EXPECT_TRUE(fs::is_directory(path));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0755));
    drainMainQueue();
    EXPECT_EQ(output.text(), "");
}

TEST(EnsureDirectoryExists, LogsTheReasonOfAFailure) {
    const CapturedOutput output;
    // Not even root can create a directory there.
    EXPECT_FALSE(ensureDirectoryExists(url("/proc/orvalo/audio")));
    EXPECT_EQ(output.text(), "") << "The line waits for the main queue.";
    drainMainQueue();
    ASSERT_EQ(output.lines().size(), 1U);
    const std::string start =
        "ensureDirectoryExists() : ERROR: Creating required directory '/proc/orvalo/audio' "
        "failed: ";
    const auto line = output.lines()[0];
    EXPECT_EQ(line.substr(0, start.size()), start);
    EXPECT_EQ(line.substr(line.size() - std::string("No such file or directory").size()),
              "No such file or directory");
}

TEST(EnsureDirectoryExists, FailsBelowAPlainFile) {
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "file") << "kept";
    const auto path = (folder.path() / "file/below").string();
    const CapturedOutput output;
    EXPECT_FALSE(ensureDirectoryExists(URL::fileURLWithPath(path)));
    drainMainQueue();
    ASSERT_EQ(output.lines().size(), 1U);
    EXPECT_EQ(output.lines()[0].find("ensureDirectoryExists() : ERROR: Creating required "
                                     "directory '" +
                                     path + "' failed: "),
              0U);
    EXPECT_NE(output.lines()[0].find("Not a directory"), std::string::npos);
}

}  // namespace
}  // namespace orvalo::testing
