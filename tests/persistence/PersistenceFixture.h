#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "persistence/PersistentAppData.h"
#include "tests/testing/Program.h"

namespace orvalo::testing {

/// The shared instance over empty stores in a configuration folder of this program.
class PersistenceFixture : public ::testing::Test {
  protected:
    using Storage = PersistentAppData::Storage;

    PersistenceFixture();

    PersistentAppData& data = *PersistentAppData::sharedInstance();
    const std::shared_ptr<UserDefaults> standard = UserDefaults::standard();
    const std::shared_ptr<UserDefaults> group = UserDefaultsViews::shared();
};

/// Runs persistence_peer to its end.
struct PeerRun {
    /// home: the configuration folder; "" for that of this program.
    explicit PeerRun(const std::vector<std::string>& words, const std::string& home = {});

    std::vector<std::string> output;
    int status = 0;
    std::string error;
};

/// The configuration folder of this program.
const std::string& home();

}  // namespace orvalo::testing
