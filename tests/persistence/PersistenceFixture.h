#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "persistence/PersistentAppData.h"
#include "tests/programs/play/Program.h"

namespace orvalo::testing {

/// The shared instance over empty stores in a home of this program's own.
class PersistenceFixture : public ::testing::Test {
  protected:
    using Storage = PersistentAppData::Storage;

    PersistenceFixture();

    PersistentAppData& data = *PersistentAppData::sharedInstance();
    const std::shared_ptr<UserDefaults> standard = UserDefaults::standard();
    const std::shared_ptr<UserDefaults> group = UserDefaultsViews::shared();
};

/// A run of the peer program to its end.
struct PeerRun {
    /// home: the folder of the user's configuration; "" is this program's own.
    explicit PeerRun(const std::vector<std::string>& words, const std::string& home = {});

    std::vector<std::string> output;
    int status = 0;
    std::string error;
};

/// The folder of the user's configuration that this program has.
const std::string& home();

}  // namespace orvalo::testing
