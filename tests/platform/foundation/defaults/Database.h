#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvalo::testing {

/// Runs statements on a database as another program would. Returns the first column of all rows.
/// Throws std::runtime_error with SQLite's text.
std::vector<std::string> query(const std::filesystem::path& file, const std::string& statements);

/// Moves the content of the log into the database.
void emptyLog(const std::filesystem::path& file);

/// The damaged files that were set aside beside a settings file. Leaves out their logs.
std::vector<std::filesystem::path> setAside(const std::filesystem::path& file);

}  // namespace orvalo::testing
