#pragma once

#include <filesystem>
#include <optional>

namespace orvalo {

// The user's folders by the rules of the XDG Base Directory Specification, which has programs pass
// over a variable whose path is not absolute. The same as long as the process lives. Any thread.

/// $XDG_CONFIG_HOME, else ~/.config.
std::filesystem::path userConfigurationFolder();
/// $XDG_DATA_HOME, else ~/.local/share.
std::filesystem::path userDataFolder();
/// $XDG_CACHE_HOME, else ~/.cache.
std::filesystem::path userCacheFolder();

/// The documents' folder as user-dirs.dirs in the user's configuration names it, by an absolute
/// path or one from "$HOME" on; nothing where it names none. Read at every call.
std::optional<std::filesystem::path> userDocumentsFolder();

}  // namespace orvalo
