#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "platform/audio/lv2/LV2Bundle.h"

namespace {

using orvalo::LV2SearchPath;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Sets or unsets an environment variable for the object's life.
class Variable {
  public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* before = std::getenv(name)) {
            before_ = before;
        }
        set(value);
    }
    ~Variable() { set(before_ ? before_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    void set(const char* value) const {
        if (value == nullptr) {
            unsetenv(name_);
        } else {
            setenv(name_, value, 1);
        }
    }
    const char* name_;
    std::optional<std::string> before_;
};

TEST(SearchPath, FollowsLV2PathInItsOrder) {
    const Variable path("LV2_PATH", "/one:/two::$ORVALO_TEST_FOLDER/three:$ORVALO_TEST_NONE/four");
    const Variable folder("ORVALO_TEST_FOLDER", "/somewhere");
    const auto found = LV2SearchPath::fromEnvironment("/own");
    EXPECT_THAT(found.folders,
                ElementsAre("/one", "/two", "/somewhere/three", "$ORVALO_TEST_NONE/four"));
    EXPECT_EQ(found.ownFolder, "/own");
}

TEST(SearchPath, ExpandsTheHomeFolder) {
    const Variable path("LV2_PATH", "~/effects:~");
    const Variable home("HOME", "/home/somebody");
    EXPECT_THAT(LV2SearchPath::fromEnvironment("/own").folders,
                ElementsAre("/home/somebody/effects", "/home/somebody"));
}

TEST(SearchPath, HasOnlyTheOwnFolderWhenLV2PathIsEmpty) {
    const Variable path("LV2_PATH", "");
    EXPECT_THAT(LV2SearchPath::fromEnvironment("/own").folders, IsEmpty());
}

TEST(SearchPath, IsTheStandardPathWithoutLV2Path) {
    const Variable path("LV2_PATH", nullptr);
    const Variable home("HOME", "/home/somebody");
    const auto folders = LV2SearchPath::fromEnvironment("/own").folders;
    EXPECT_EQ(folders.front(), "/home/somebody/.lv2");
    EXPECT_THAT(folders, Contains("/usr/lib/lv2"));
    EXPECT_THAT(folders, Contains("/usr/local/lib/lv2"));
}

}  // namespace
