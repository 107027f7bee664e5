#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvalo {

/// The name of the application's own domain: the bundle's identifier, or the program's name when
/// the bundle states none. Any thread.
const std::string& ownDomainName();

/// The reason why a suite of this name is refused, as a sentence; absent for a valid name.
std::optional<std::string> suiteNameTrouble(std::string_view name);

/// <user's configuration>/<own domain>/defaults.sqlite.
std::filesystem::path ownDomainFile();
/// <user's configuration>/orvalo-suites/<name>.sqlite. name: without suiteNameTrouble().
std::filesystem::path suiteFile(std::string_view name);
/// The names of the user's suites, in no order. Throws NSError when their folder cannot be read.
std::vector<std::string> suiteNames();

}  // namespace orvalo
