#include "tests/testing/Desktop.h"

#include <adwaita.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <sstream>

#include "platform/foundation/GLibPointer.h"
#include "tests/testing/ServerProcess.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"
#include "tests/testing/XServer.h"

// Last: its macros break other headers.
#include <X11/Xlib.h>

namespace orvalo::testing {

namespace {

/// The texts as a null-terminated argument list; valid while the texts live.
std::vector<char*> textsOf(std::vector<std::string>& arguments) {
    std::vector<char*> texts(arguments.size() + 1);
    std::transform(arguments.begin(), arguments.end(), texts.begin(),
                   [](auto& argument) { return argument.data(); });
    return texts;
}

/// GTK looks for the window manager when it starts, and rarely again.
void waitForWindowManager() {
    auto* display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    const auto root = DefaultRootWindow(display);
    XSelectInput(display, root, PropertyChangeMask);
    // Extended Window Manager Hints: a window manager sets this property when it is ready.
    const auto supporting = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
    const auto isThere = [&] {
        Atom type = None;
        int format = 0;
        unsigned long count = 0;
        unsigned long rest = 0;
        unsigned char* value = nullptr;
        XGetWindowProperty(display, root, supporting, 0, 1, False, AnyPropertyType, &type, &format,
                           &count, &rest, &value);
        XFree(value);
        return type != None;
    };
    while (!isThere()) {
        XEvent event;
        XNextEvent(display, &event);
    }
    XCloseDisplay(display);
}

/// Waits until any window manager handles the windows, or until none does.
void waitUntilManaged(bool isWanted) {
    auto* display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    EXPECT_TRUE(pollUntil([&] {
        XWindowAttributes root;
        XGetWindowAttributes(display, DefaultRootWindow(display), &root);
        // Only one client may select this, the window manager.
        return ((root.all_event_masks & SubstructureRedirectMask) != 0) == isWanted;
    }));
    XCloseDisplay(display);
}

/// The display, the window manager, GTK, and the folder of its files.
struct Desktop {
    TemporaryFolder home;
    XServer server{"1280x960x24"};
    std::optional<ServerProcess> manager;

    Desktop() {
        const auto path = home.path().string();
        for (const auto* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
            setenv(name, path.c_str(), 1);
        }
        setenv("GSETTINGS_BACKEND", "memory", 1);
        setenv("GTK_A11Y", "none", 1);
        unsetenv("GTK_USE_PORTAL");
        g_set_prgname("orvalo-test");
        g_set_application_name("Orvalo");
        manager.emplace(std::vector<std::string>{"openbox", "--sm-disable"});
        waitForWindowManager();
        gtk_init();
        adw_init();
    }
};

Desktop& desktop() {
    static Desktop started;
    return started;
}

}  // namespace

void startDesktop() {
    desktop();
}

void startDesktopWith(const std::vector<std::string>& windowManager) {
    auto& manager = desktop().manager;
    manager.reset();
    waitUntilManaged(false);
    if (!windowManager.empty()) {
        manager.emplace(windowManager);
        waitUntilManaged(true);
    }
}

std::vector<unsigned long> windowsNamed(const std::string& name) {
    std::vector<std::string> all{"xdotool", "search", "--onlyvisible", "--name", name};
    auto texts = textsOf(all);
    char* output = nullptr;
    g_spawn_sync(nullptr, texts.data(), nullptr,
                 static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDERR_TO_DEV_NULL),
                 nullptr, nullptr, &output, nullptr, nullptr, nullptr);
    const GText held(output);
    std::vector<unsigned long> windows;
    std::istringstream numbers(output != nullptr ? output : "");
    for (unsigned long number = 0; numbers >> number;) {
        windows.push_back(number);
    }
    return windows;
}

unsigned long windowNamed(const std::string& name) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    auto found = windowsNamed(name);
    while (found.empty() && std::chrono::steady_clock::now() < deadline) {
        found = windowsNamed(name);
    }
    return found.at(0);
}

void activateWindow(const std::string& name) {
    act({"windowactivate", "--sync", std::to_string(windowNamed(name))});
}

void act(const std::vector<std::string>& arguments) {
    std::vector<std::string> all{"xdotool"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    auto texts = textsOf(all);
    int status = -1;
    g_spawn_sync(nullptr, texts.data(), nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr, nullptr,
                 nullptr, &status, nullptr);
    EXPECT_EQ(status, 0) << arguments.front();
}

}  // namespace orvalo::testing
