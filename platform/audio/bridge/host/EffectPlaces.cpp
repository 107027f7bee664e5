#include "platform/audio/bridge/host/EffectPlaces.h"

#include <glib.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>

#include "platform/foundation/UserFolders.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

constexpr const char* kScratchSize = "268435456";      // 256 MiB.
constexpr const char* kSharedMemorySize = "67108864";  // 64 MiB.

constexpr std::array kNamespaces{"--unshare-user-try", "--unshare-ipc",    "--unshare-pid",
                                 "--unshare-net",      "--unshare-uts",    "--unshare-cgroup-try",
                                 "--new-session",      "--die-with-parent"};
constexpr std::array kSystemPlaces{
    "/usr", "/lib", "/lib32", "/libx32", "/lib64", "/bin", "/sbin", "/opt",
    // Of /etc only what programs without the network read: it also has the machine's secrets.
    "/etc/alternatives", "/etc/group", "/etc/ld.so.cache", "/etc/locale.alias", "/etc/localtime",
    "/etc/nsswitch.conf", "/etc/OpenCL", "/etc/passwd", "/etc/timezone", "/sys/devices/system/cpu"};
constexpr std::array kPrefixFolders{"lib", "libexec", "share"};
constexpr std::array kGraphicsData{"/sys/bus", "/sys/class", "/sys/dev", "/sys/devices"};
constexpr std::array kGraphics{"/dev/dri", "/dev/nvidiactl", "/dev/nvidia0", "/dev/nvidia-modeset"};
// What only UIs read.
constexpr std::array kPluginUIPlaces{
    "/etc/drirc",   "/etc/fonts", "/etc/glvnd",  "/etc/gtk-2.0", "/etc/gtk-3.0",
    "/etc/gtk-4.0", "/etc/pango", "/etc/vulkan", "/etc/X11",     "/var/cache/fontconfig"};
constexpr std::array kHomePlaces{".fonts",     ".fonts.conf", ".icons",      ".themes",
                                 ".gtkrc-2.0", ".Xdefaults",  ".Xresources", ".drirc"};
constexpr std::array kConfigurationPlaces{"fontconfig", "gtk-2.0", "gtk-3.0", "gtk-4.0", "drirc"};
constexpr std::array kDataPlaces{"fonts", "icons", "themes"};
constexpr std::array kCachePlaces{"fontconfig"};

/// bubblewrap's arguments under construction.
class Command {
  public:
    std::vector<std::string> arguments;

    void add(std::initializer_list<std::string> more) {
        arguments.insert(arguments.end(), more.begin(), more.end());
    }
    /// Read-only; nothing for a place that is missing or that the user cannot reach. Each mount
    /// lengthens the start, so what is shown already is not mounted again.
    void show(const fs::path& place) {
        std::error_code ignored;
        const auto file = fs::canonical(place, ignored);
        if (!shows(file)) {
            showAs(place, place);
        } else if (file != place && !shows(place)) {
            add({"--symlink", file, place});
            shown_.push_back(place / "");
        }
    }
    void showAs(const fs::path& file, const fs::path& place) {
        std::error_code ignored;
        if (fs::exists(file, ignored)) {
            add({"--ro-bind", file, place});
            shown_.push_back(place / "");
        }
    }
    /// Whether the place or a folder around it is shown.
    bool shows(const fs::path& place) const {
        return std::ranges::any_of(shown_, [&place](const fs::path& folder) {
            return (place / "").native().starts_with(folder.native());
        });
    }
    template <typename Names>
    void show(const fs::path& folder, const Names& names) {
        for (const char* name : names) {
            show(folder / name);
        }
    }

  private:
    std::vector<fs::path> shown_;  // Each with a slash at its end.
};

/// Whether the path, without links, names a regular file that all users may read. The permissions
/// of the home folder do not count, because many systems keep all of it from other users.
bool isReadableByAll(const fs::path& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode) ||
        (status.st_mode & S_IROTH) == 0) {
        return false;
    }
    const fs::path home = g_get_home_dir();
    for (auto folder = file.parent_path(); folder.has_relative_path() && folder != home;
         folder = folder.parent_path()) {
        if (stat(folder.c_str(), &status) != 0 || (status.st_mode & S_IXOTH) == 0) {
            return false;
        }
    }
    return true;
}

/// Shows a bundle, and the files that links in it lead to. A bundle is not trusted: a link
/// shows no folder, and no file that the user keeps from others.
void showBundle(Command& command, const fs::path& bundle) {
    command.show(bundle);
    std::error_code error;
    for (fs::recursive_directory_iterator item(bundle, error), end; !error && item != end;
         item.increment(error)) {
        std::error_code ignored;
        if (!item->is_symlink(ignored)) {
            continue;
        }
        const auto file = fs::canonical(item->path(), ignored);
        if (!isReadableByAll(file)) {
            continue;
        }
        const auto target = fs::read_symlink(item->path(), ignored);
        // bubblewrap cannot follow links in what it shows already.
        for (const auto& place : {(item->path().parent_path() / target).lexically_normal(), file}) {
            if (!command.shows(place)) {
                command.showAs(file, place);
            }
        }
    }
}

/// The socket of the X server in DISPLAY; empty for a server of another machine.
std::string socketOfServer() {
    const char* display = g_getenv("DISPLAY");
    const std::string_view name = display == nullptr ? "" : display;
    const auto colon = name.find(':');
    if (colon == std::string_view::npos || (colon != 0 && name.substr(0, colon) != "unix")) {
        return {};
    }
    const auto number = name.substr(colon + 1, name.find('.', colon) - colon - 1);
    return number.empty() ? "" : "/tmp/.X11-unix/X" + std::string(number);
}

void showPluginUIPlaces(Command& command) {
    command.show("", kPluginUIPlaces);
    command.show(g_get_home_dir(), kHomePlaces);
    command.show(userConfigurationFolder(), kConfigurationPlaces);
    command.show(userDataFolder(), kDataPlaces);
    command.show(userCacheFolder(), kCachePlaces);
}

void showServer(Command& command) {
    command.show("", kGraphicsData);
    for (const char* device : kGraphics) {
        command.add({"--dev-bind-try", device, device});
    }
    if (const auto socket = socketOfServer(); !socket.empty()) {
        command.show(socket);
    }
    const char* authority = g_getenv("XAUTHORITY");
    command.show(authority == nullptr ? fs::path(g_get_home_dir()) / ".Xauthority"
                                      : fs::path(authority));
}

}  // namespace

std::vector<std::string> confinedCommand(const fs::path& program, const EffectPlaces& places) {
    Command command;
    command.add({"bwrap"});
    command.arguments.insert(command.arguments.end(), kNamespaces.begin(), kNamespaces.end());
    command.add({"--cap-drop", "ALL", "--chdir", "/"});
    command.show("", kSystemPlaces);
    command.add(
        {"--proc", "/proc", "--dev", "/dev", "--size", kSharedMemorySize, "--tmpfs", "/dev/shm"});
    command.add({"--dir", g_get_home_dir()});
    command.show(fs::path(g_get_home_dir()) / ".lv2");
    // From <prefix>/libexec/orvalo/<program>.
    command.show(program.parent_path().parent_path().parent_path(), kPrefixFolders);
    command.show(program);
    for (const auto& bundle : places.bundles) {
        showBundle(command, bundle);
    }
    for (const auto& folder : places.writable) {
        command.add({"--bind-try", folder, folder});
    }
    if (!places.scratch.empty()) {
        command.add({"--size", kScratchSize, "--tmpfs", places.scratch});
    }
    if (places.hasPluginUI) {
        showPluginUIPlaces(command);
        showServer(command);
    }
    // Without a limit of their size; and root may write much of /proc without a capability.
    command.add({"--remount-ro", "/dev", "--remount-ro", "/", "--remount-ro", "/proc"});
    command.add({program});
    return command.arguments;
}

}  // namespace orvalo
