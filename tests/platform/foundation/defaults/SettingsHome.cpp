#include "tests/platform/foundation/defaults/SettingsHome.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>

#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

namespace {

class SettingsHome : public ::testing::Environment {
  public:
    static SettingsHome& shared() {
        static auto& home = *new SettingsHome;
        return home;
    }

    std::filesystem::path path() const { return folder_->path() / "config"; }

    void SetUp() override {
        folder_ = std::make_unique<TemporaryFolder>();
        setenv("XDG_CONFIG_HOME", path().c_str(), 1);
    }
    void TearDown() override { folder_.reset(); }

  private:
    std::unique_ptr<TemporaryFolder> folder_;
};

const auto* const kRegistered = ::testing::AddGlobalTestEnvironment(&SettingsHome::shared());

}  // namespace

std::filesystem::path settingsHome() {
    return SettingsHome::shared().path();
}

std::string newSuiteName() {
    static std::atomic<int> count = 0;
    return "suite " + std::to_string(++count);
}

}  // namespace orvalo::testing
