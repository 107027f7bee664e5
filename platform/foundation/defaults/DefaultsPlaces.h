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

/// Why a suite of this name is refused, as a sentence; nothing when it is not.
std::optional<std::string> suiteNameTrouble(std::string_view name);

/// <user's configuration>/<own domain>/defaults.sqlite. The user's configuration is
/// $XDG_CONFIG_HOME where that is an absolute path, else ~/.config.
std::filesystem::path ownDomainFile();
/// <user's configuration>/orvalo-suites/<name>.sqlite. name: one without suiteNameTrouble().
std::filesystem::path suiteFile(std::string_view name);
/// The suites that the user has, in the order of their names.
std::vector<std::string> suiteNames();

}  // namespace orvalo
