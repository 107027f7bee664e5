#include "tests/testing/WaylandServer.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/testing/FileBytes.h"
#include "tests/testing/Lines.h"
#include "tests/testing/Program.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

Lines message(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "swaymsg");
    return Program(arguments).readAll();
}

bool hasKeyboard() {
    return std::ranges::any_of(message({"--type", "get_inputs"}), [](const auto& line) {
        return line.find("virtual_keyboard") != std::string::npos;
    });
}

bool showsX11Window() {
    return std::ranges::any_of(message({"--type", "get_tree", "--raw"}), [](const auto& line) {
        // The number of an X window; Wayland's have null.
        return std::regex_search(line, std::regex("\"window\": ?[0-9]"));
    });
}

}  // namespace

WaylandServer::WaylandServer(X11 x11) {
    g_setenv("XDG_RUNTIME_DIR", folder_.path().c_str(), TRUE);
    g_setenv("SWAYSOCK", (folder_.path() / "messages").c_str(), TRUE);
    g_setenv("WLR_BACKENDS", "headless", TRUE);
    g_setenv("WLR_RENDERER", "pixman", TRUE);
    for (const auto* name : {"DISPLAY", "WAYLAND_DISPLAY", "GDK_BACKEND"}) {
        g_unsetenv(name);
    }
    const auto settings = folder_.path() / "settings";
    writeBytes(settings, std::string("xwayland ") + (x11 == X11::xwayland ? "enable" : "disable") +
                             "\n"
                             "output HEADLESS-1 resolution 1280x960\n"
                             "default_border none\n"
                             "exec env >" +
                             (folder_.path() / "environment").string() + "\n");
    std::vector<std::string> command{"sway", "--config", settings.string()};
    if (geteuid() == 0) {
        // sway refuses to be root, and Xwayland admits only users with a name.
        command.insert(command.begin(),
                       {"unshare", "--user", "--map-user=65534", "--map-group=65534"});
    }
    process_ = std::make_unique<ServerProcess>(command);
    if (!pollUntil([&] { return isReady(x11); })) {
        throw std::runtime_error("sway did not start.");
    }
    // An application that learns of a keyboard by its first key misses that key. This one stays.
    keyboard_ = std::make_unique<ServerProcess>(std::vector<std::string>{"wtype", "-s", "1000000"});
    if (!pollUntil(hasKeyboard)) {
        throw std::runtime_error("wtype did not start.");
    }
}

bool WaylandServer::isReady(X11 x11) const {
    // What sway tells its children.
    const auto environment = folder_.path() / "environment";
    if (!std::filesystem::exists(environment)) {
        return false;
    }
    const auto text = bytesOf(environment);
    for (const auto* name : {"WAYLAND_DISPLAY", "DISPLAY"}) {
        std::smatch found;
        if (std::regex_search(text, found,
                              std::regex(std::string("(?:^|\n)") + name + "=(.*)\n"))) {
            g_setenv(name, found[1].str().c_str(), TRUE);
        }
    }
    return g_getenv("WAYLAND_DISPLAY") != nullptr &&
           (x11 == X11::none || g_getenv("DISPLAY") != nullptr);
}

void WaylandServer::showX11Window(const std::string& name) {
    for (int i = 0; i < 5 && !pollUntil(showsX11Window, std::chrono::seconds(5)); ++i) {
        Program({"xdotool", "search", "--onlyvisible", "--name", name, "windowunmap", "windowmap"})
            .wait();
    }
}

void WaylandServer::type(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "wtype");
    Program(arguments).wait();
}

void WaylandServer::pointAt(int x, int y) {
    message({"seat", "-", "cursor", "set", std::to_string(x), std::to_string(y)});
}

void WaylandServer::click() {
    message({"seat", "-", "cursor", "press", "button1"});
    message({"seat", "-", "cursor", "release", "button1"});
}

std::filesystem::path WaylandServer::picture() {
    auto file = folder_.path() / "picture.png";
    Program({"grim", file.string()}).wait();
    return file;
}

}  // namespace orvalo::testing
