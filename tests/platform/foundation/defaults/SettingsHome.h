#pragma once

#include <filesystem>
#include <string>

namespace orvalo::testing {

/// The user's configuration of this test program and those that it starts: a folder of its own,
/// which goes at the end.
std::filesystem::path settingsHome();

/// A name for a suite that no other call has given.
std::string newSuiteName();

}  // namespace orvalo::testing
