#pragma once

#include <filesystem>

namespace orvalo {

// The user's folders of the XDG Base Directory Specification. Unlike g_get_user_config_dir() and
// its siblings they ignore, as XDG's base directories require, a variable with a relative path.
// Constant for the life of the process. Any thread.

/// $XDG_CONFIG_HOME, else ~/.config.
std::filesystem::path userConfigurationFolder();
/// $XDG_DATA_HOME, else ~/.local/share.
std::filesystem::path userDataFolder();
/// $XDG_STATE_HOME, else ~/.local/state.
std::filesystem::path userStateFolder();
/// $XDG_CACHE_HOME, else ~/.cache.
std::filesystem::path userCacheFolder();

}  // namespace orvalo
