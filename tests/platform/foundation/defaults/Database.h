#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orvalo::testing {

/// Runs statements on a database as somebody else's program would, and returns the first column of
/// all rows as text. Throws std::runtime_error with SQLite's words.
std::vector<std::string> query(const std::filesystem::path& file, const std::string& statements);

/// Moves a log's content into its database, where a file is to be damaged.
void emptyLog(const std::filesystem::path& file);

std::string bytesOf(const std::filesystem::path& file);
void writeBytes(const std::filesystem::path& file, const std::string& bytes);

/// The files that were set aside as damaged beside a domain's file, without their logs.
std::vector<std::filesystem::path> setAside(const std::filesystem::path& file);

}  // namespace orvalo::testing
