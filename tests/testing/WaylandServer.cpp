#include "tests/testing/WaylandServer.h"

#include <glib.h>

#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/testing/FileBytes.h"
#include "tests/testing/Program.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

WaylandServer::WaylandServer(X11 x11) {
    g_setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), TRUE);
    g_unsetenv("DISPLAY");
    g_unsetenv("GDK_BACKEND");
    std::vector<std::string> command{"weston",
                                     "--backend=headless-backend.so",
                                     "--use-pixman",
                                     "--width=1280",
                                     "--height=960",
                                     "--no-config",
                                     "--idle-time=0",
                                     "--debug",  // Admits screenshots.
                                     "--socket=wayland-test",
                                     "--log=" + (folder_.path() / "log").string()};
    if (x11 == X11::xwayland) {
        command.emplace_back("--xwayland");
    }
    process_ = std::make_unique<ServerProcess>(command);
    if (!pollUntil([&] { return isReady(x11); })) {
        throw std::runtime_error("weston did not start.");
    }
    g_setenv("WAYLAND_DISPLAY", "wayland-test", TRUE);
}

bool WaylandServer::isReady(X11 x11) const {
    if (!isListening(folder_.path() / "wayland-test")) {
        return false;
    }
    if (x11 == X11::none) {
        return true;
    }
    const auto log = bytesOf(folder_.path() / "log");
    std::smatch found;
    if (!std::regex_search(log, found, std::regex("xserver listening on display (:[0-9]+)\\n"))) {
        return false;
    }
    g_setenv("DISPLAY", found[1].str().c_str(), TRUE);
    return true;
}

std::filesystem::path WaylandServer::picture() {
    const auto pictures = folder_.path() / "pictures";
    std::filesystem::remove_all(pictures);
    std::filesystem::create_directory(pictures);
    Program({"weston-screenshooter"}, {{"XDG_PICTURES_DIR", pictures.string()}}).wait();
    return std::filesystem::directory_iterator(pictures)->path();
}

}  // namespace orvalo::testing
