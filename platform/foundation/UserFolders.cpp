#include "platform/foundation/UserFolders.h"

#include <glib.h>

#include <fstream>
#include <string>
#include <string_view>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kDocuments = "XDG_DOCUMENTS_DIR=";
constexpr std::string_view kHome = "$HOME";

/// GLib takes a path from the environment as it is. inHome: where the folder is otherwise.
fs::path absolute(const fs::path& folder, const char* inHome) {
    return folder.is_absolute() ? folder : fs::path(g_get_home_dir()) / inHome;
}

/// A folder as user-dirs.dirs has it, in the shell's quotes.
std::optional<fs::path> folderOf(const std::string& quoted) {
    const GText text(g_shell_unquote(quoted.c_str(), nullptr));
    std::string path = text != nullptr ? text.get() : "";
    if (path == kHome || path.starts_with(std::string(kHome) + '/')) {
        path.replace(0, kHome.size(), g_get_home_dir());
    }
    while (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path.starts_with('/') ? std::optional<fs::path>(path) : std::nullopt;
}

}  // namespace

fs::path userConfigurationFolder() {
    return absolute(g_get_user_config_dir(), ".config");
}

fs::path userDataFolder() {
    return absolute(g_get_user_data_dir(), ".local/share");
}

fs::path userCacheFolder() {
    return absolute(g_get_user_cache_dir(), ".cache");
}

// GLib's own reader looks below a relative $XDG_CONFIG_HOME.
std::optional<fs::path> userDocumentsFolder() {
    std::ifstream file(userConfigurationFolder() / "user-dirs.dirs");
    std::optional<fs::path> folder;
    for (std::string line; std::getline(file, line);) {
        line.erase(0, line.find_first_not_of(kBlanks));
        if (line.starts_with(kDocuments)) {
            folder = folderOf(line.substr(kDocuments.size()));
        }
    }
    return folder;
}

}  // namespace orvalo
