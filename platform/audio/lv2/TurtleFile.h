#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace orvalo {

/// The bytes of a plain file of at most `limit` bytes. Nothing when there is none; what is no plain
/// file, too large or unreadable is reported, too.
std::optional<std::string> readTurtle(const std::filesystem::path& path, std::size_t limit);

/// What is wrong with a Turtle text, with its line; empty for a sound one.
std::string turtleError(const std::string& text);

/// The same for a file with a plug-in's data or presets. Files are looked at before lilv reads
/// them: it keeps the first half of a broken one, and can read for ever where the end is missing.
std::string turtleFileError(const std::string& uri);

}  // namespace orvalo
