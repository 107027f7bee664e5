#include "platform/foundation/UserFolders.h"

#include <glib.h>

namespace orvalo {

namespace {

std::filesystem::path absolute(const std::filesystem::path& folder, const char* inHome) {
    return folder.is_absolute() ? folder : std::filesystem::path(g_get_home_dir()) / inHome;
}

}  // namespace

std::filesystem::path userConfigurationFolder() {
    return absolute(g_get_user_config_dir(), ".config");
}

std::filesystem::path userDataFolder() {
    return absolute(g_get_user_data_dir(), ".local/share");
}

std::filesystem::path userStateFolder() {
    return absolute(g_get_user_state_dir(), ".local/state");
}

std::filesystem::path userCacheFolder() {
    return absolute(g_get_user_cache_dir(), ".cache");
}

}  // namespace orvalo
