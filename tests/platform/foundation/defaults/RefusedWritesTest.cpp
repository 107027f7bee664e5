#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>

#include "tests/platform/foundation/defaults/Database.h"
#include "tests/platform/foundation/defaults/OtherWrites.h"
#include "tests/platform/foundation/defaults/SuiteFile.h"
#include "tests/platform/foundation/defaults/Worker.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr uid_t kSomebodyElse = 65534;

/// Limits the size of files for the object's life.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t size) : formerHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &former_);
        const rlimit limit{size, former_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &former_);
        std::signal(SIGXFSZ, formerHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit former_{};
    sighandler_t formerHandler_;
};

class RefusedWrite : public SuiteFile {
  protected:
    void expectEverythingToWork() const {
        const auto settings = open();
        settings->set("works", "again");
        EXPECT_EQ(Worker({name_}).ask("get again"), "works");
        EXPECT_THAT(query(file_, "PRAGMA integrity_check"), ElementsAre("ok"));
    }
};

TEST_F(RefusedWrite, KeepsTheValueOnAFullDisk) {
    const auto settings = open();
    settings->set("stored", "key");
    {
        const CapturedOutput errors(2);
        const FullDisk full;
        for (int count = 0; count < 3; ++count) {
            settings->set("refused", "key");
            EXPECT_EQ(settings->string("key"), "stored");
            EXPECT_EQ(Worker({name_}).ask("get key"), "stored");
        }
        EXPECT_THAT(errors.text(), HasSubstr("'key' in " + file_.string() +
                                             " stays as it was: No space left on device."));
        settings->removeObject("key");
        EXPECT_EQ(settings->string("key"), "stored");
        EXPECT_EQ(open()->string("key"), "stored");
    }
    settings->set("accepted", "key");
    EXPECT_EQ(settings->string("key"), "accepted");
    expectEverythingToWork();
}

TEST_F(RefusedWrite, KeepsTheValueWhenTheFileIsTooLarge) {
    const auto settings = open();
    settings->set("stored", "key");
    const std::string large(100'000, 'x');
    {
        const CapturedOutput errors(2);
        const FileSizeLimit limit(std::filesystem::file_size(file_.string() + "-wal") + 20'000);
        for (int count = 0; count < 3; ++count) {
            settings->set(large, "key");
            EXPECT_EQ(settings->string("key"), "stored");
        }
        EXPECT_THAT(errors.text(), HasSubstr(" stays as it was: File too large."));
        EXPECT_EQ(Worker({name_}).ask("get key"), "stored");
    }
    settings->set(large, "key");
    EXPECT_EQ(settings->string("key"), large);
    expectEverythingToWork();
}

TEST_F(RefusedWrite, GivesNoSuiteWhereNoFileCanBeMade) {
    {
        const CapturedOutput errors(2);
        const FileSizeLimit limit(0);
        EXPECT_EQ(open(), nullptr);
    }
    {
        const CapturedOutput errors(2);
        const FullDisk full;
        EXPECT_EQ(open(), nullptr);
        EXPECT_THAT(errors.text(), HasSubstr("The suite '" + name_ + "' cannot be opened: "));
    }
    expectEverythingToWork();
}

TEST_F(RefusedWrite, KeepsTheValueOfTheStandardStore) {
    const auto standard = UserDefaults::standard();
    standard->set("stored", "key");
    {
        const CapturedOutput errors(2);
        const FullDisk full;
        standard->set("refused", "key");
        EXPECT_EQ(standard->string("key"), "stored");
        EXPECT_THAT(errors.text(), HasSubstr("stays as it was: No space left on device."));
    }
    standard->set("accepted", "key");
    EXPECT_EQ(standard->string("key"), "accepted");
    standard->removeObject("key");
}

// Root may write everywhere, so these tests continue as another user in another process.
void expect(bool condition, const char* what) {
    if (!condition) {
        std::cerr << "not so: " << what << std::endl;
        _exit(EXIT_FAILURE);
    }
}

void becomeSomebodyElse() {
    if (geteuid() != 0) {
        return;
    }
    const auto home = settingsHome().parent_path();
    expect(chown(home.c_str(), kSomebodyElse, kSomebodyElse) == 0, "the folder is given away");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
        expect(chown(entry.path().c_str(), kSomebodyElse, kSomebodyElse) == 0, "so is the file");
    }
    expect(setgid(kSomebodyElse) == 0 && setuid(kSomebodyElse) == 0, "this is somebody else");
}

void protect(const std::filesystem::path& folder, bool isProtected) {
    chmod(folder.c_str(), 0700);
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        chmod(entry.path().c_str(), isProtected ? 0400 : 0600);
    }
    chmod(folder.c_str(), isProtected ? 0500 : 0700);
}

[[noreturn]] void endWell() {
    std::filesystem::remove_all(settingsHome().parent_path());
    std::cerr << "all is well" << std::endl;
    _exit(EXIT_SUCCESS);
}

[[noreturn]] void openInAReadOnlyFolder(const std::string& name) {
    const auto file = suiteFile(name);
    UserDefaults::suiteName(name)->set("stored", "key");
    emptyLog(file);
    std::filesystem::remove(file.string() + "-wal");
    std::filesystem::remove(file.string() + "-shm");
    becomeSomebodyElse();
    protect(file.parent_path(), true);
    expect(UserDefaults::suiteName(name) == nullptr, "the suite cannot be opened");
    protect(file.parent_path(), false);
    expect(UserDefaults::suiteName(name)->string("key") == "stored", "nothing is lost");
    endWell();
}

[[noreturn]] void useAReadOnlyFolder(const std::string& name) {
    const auto file = suiteFile(name);
    UserDefaults::suiteName(name)->set("stored", "key");
    becomeSomebodyElse();
    protect(file.parent_path(), true);
    expect(UserDefaults::suiteName("another") == nullptr, "no new suite can be made");
    const auto settings = UserDefaults::suiteName(name);
    expect(settings != nullptr, "the suite can be opened");
    expect(settings->string("key") == "stored", "what is stored can be read");
    settings->set("refused", "key");
    expect(settings->string("key") == "stored", "what was stored is still there");
    expect(settings->dictionaryRepresentation().size() == 1, "all of it");
    expect(Worker({name}).ask("get key") == "stored", "by others, too");
    protect(file.parent_path(), false);
    settings->set("accepted", "key");
    expect(settings->string("key") == "accepted", "it can be written again");
    expect(UserDefaults::suiteName(name)->string("key") == "accepted", "by all who open it");
    endWell();
}

[[noreturn]] void useALinkToAReadOnlyFolder(const std::string& name) {
    const auto file = suiteFile(name);
    const auto target = settingsHome() / ("elsewhere of " + name) / "settings";
    UserDefaults::suiteName(name)->set("in the database", "key");
    emptyLog(file);
    UserDefaults::suiteName(name)->set("in the log", "key");
    std::filesystem::create_directories(target.parent_path());
    for (const std::string suffix : {"", "-wal", "-shm"}) {
        std::filesystem::rename(file.string() + suffix, target.string() + suffix);
    }
    std::filesystem::create_symlink(target, file);
    becomeSomebodyElse();
    protect(target.parent_path(), true);
    const auto settings = UserDefaults::suiteName(name);
    expect(settings && settings->string("key") == "in the log", "what is in the log is read");
    protect(target.parent_path(), false);
    settings->set("accepted", "key");
    expect(settings->string("key") == "accepted", "it can be written again");
    endWell();
}

TEST_F(RefusedWrite, KeepsTheValueInAReadOnlyFolder) {
    EXPECT_EXIT(useAReadOnlyFolder(name_), ::testing::ExitedWithCode(EXIT_SUCCESS),
                "'key' in .* stays as it was: it is read-only");
}

TEST_F(RefusedWrite, GivesNoSuiteInAReadOnlyFolderWithoutALog) {
    EXPECT_EXIT(openInAReadOnlyFolder(name_), ::testing::ExitedWithCode(EXIT_SUCCESS),
                "cannot be opened: .*/orvalo-suites: Permission denied");
}

TEST_F(RefusedWrite, KeepsTheValueBehindALinkToAReadOnlyFolder) {
    EXPECT_EXIT(useALinkToAReadOnlyFolder(name_), ::testing::ExitedWithCode(EXIT_SUCCESS),
                "all is well");
}

}  // namespace
}  // namespace orvalo::testing
