#include "programs/effect-service/EffectPlaces.h"

#include <glib.h>

#include <array>

#include "platform/audio/lv2/LV2Bundle.h"
#include "platform/foundation/ExecutablePath.h"
#include "platform/foundation/UserFolders.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

constexpr std::array kSystemPlaces{"/usr",
                                   "/lib",
                                   "/lib64",
                                   "/bin",
                                   "/sbin",
                                   "/etc",
                                   "/opt",
                                   "/sys",
                                   "/proc",
                                   "/dev",
                                   "/var/cache/fontconfig",
                                   "/tmp/.X11-unix"};
constexpr std::array kPrefixFolders{"lib", "libexec", "share"};
constexpr std::array kDevices{"/dev/null",      "/dev/zero",    "/dev/full",
                              "/dev/random",    "/dev/urandom", "/dev/dri",
                              "/dev/nvidiactl", "/dev/nvidia0", "/dev/nvidia-modeset"};
constexpr std::array kHomePlaces{".fonts",      ".fonts.conf", ".icons",
                                 ".themes",     ".gtkrc-2.0",  ".Xdefaults",
                                 ".Xresources", ".Xauthority", ".drirc"};
constexpr std::array kConfigurationPlaces{"fontconfig", "gtk-2.0", "gtk-3.0", "gtk-4.0", "drirc"};
constexpr std::array kDataPlaces{"fonts", "icons", "themes"};
constexpr std::array kCachePlaces{"fontconfig"};

template <typename Names>
void add(std::vector<fs::path>& places, const fs::path& folder, const Names& names) {
    for (const char* name : names) {
        places.push_back(folder / name);
    }
}

/// Adds a bundle, and the links in it: their targets may lie outside.
void addBundle(std::vector<fs::path>& places, const fs::path& bundle) {
    places.push_back(bundle);
    std::error_code error;
    for (fs::directory_iterator item(bundle, error), end; !error && item != end;
         item.increment(error)) {
        std::error_code ignored;
        if (item->is_symlink(ignored)) {
            places.push_back(item->path());
        }
    }
}

}  // namespace

FilePlaces effectPlaces(const std::vector<std::string>& bundles, const fs::path& filesFolder,
                        const fs::path& cacheFolder) {
    FilePlaces places;
    auto& readable = places.readable;
    add(readable, "", kSystemPlaces);
    add(readable, g_get_home_dir(), kHomePlaces);
    add(readable, userConfigurationFolder(), kConfigurationPlaces);
    add(readable, userDataFolder(), kDataPlaces);
    add(readable, userCacheFolder(), kCachePlaces);
    if (const char* authority = g_getenv("XAUTHORITY")) {
        readable.emplace_back(authority);
    }
    // From <prefix>/libexec/orvalo/<program>.
    add(readable, executablePath().parent_path().parent_path().parent_path(), kPrefixFolders);
    for (const auto& folder : LV2SearchPath::fromEnvironment({}).folders) {
        readable.push_back(folder);
    }
    for (const auto& bundle : bundles) {
        addBundle(readable, bundle);
    }
    add(places.devices, "", kDevices);
    places.writable = {filesFolder, cacheFolder};
    return places;
}

}  // namespace orvalo
