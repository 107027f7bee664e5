#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "platform/foundation/defaults/DefaultsPlaces.h"
#include "platform/foundation/defaults/UserDefaults.h"
#include "tests/platform/foundation/defaults/SettingsHome.h"

namespace orvalo::testing {

/// A new suite, whose file the test may read or damage.
class SuiteFile : public ::testing::Test {
  protected:
    std::shared_ptr<UserDefaults> open() const { return UserDefaults::suiteName(name_); }

    std::string name_ = newSuiteName();
    std::filesystem::path file_ = suiteFile(name_);
};

}  // namespace orvalo::testing
