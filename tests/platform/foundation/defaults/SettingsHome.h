#pragma once

#include <filesystem>
#include <string>

namespace orvalo::testing {

/// The user's configuration folder in this test program and its children. Removed at the end.
std::filesystem::path settingsHome();

/// A suite name that no other call returns.
std::string newSuiteName();

}  // namespace orvalo::testing
