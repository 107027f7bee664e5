#include "tests/app/ApplicationFixture.h"

#include <X11/Xlib.h>
#include <gio/gio.h>

#include <algorithm>
#include <chrono>

#if defined(__SANITIZE_ADDRESS__)

// The leaks that count are the application's, which is a process of its own.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name for what it asks.
extern "C" int __lsan_is_turned_off();
int __lsan_is_turned_off() {
    return 1;
}

#endif

namespace orvalo::testing {

namespace {

/// The buses of the session, and with them the one for accessibility.
void startSession() {
    static auto* const bus = [] {
        const std::string display = g_getenv("DISPLAY");
        auto* made = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_add_service_dir(made, "/usr/share/dbus-1/services");
        g_test_dbus_up(made);
        // Which the bus has taken for one that is not the test's.
        g_setenv("DISPLAY", display.c_str(), TRUE);
        return made;
    }();
    (void)bus;
}

std::string output(const std::vector<std::string>& command) {
    Program tool(command);
    std::string result;
    for (const auto& line : tool.readAll()) {
        result += line + "\n";
    }
    tool.wait();
    return result;
}

constexpr std::chrono::seconds kPatience{60};

/// Throws std::invalid_argument when there never is one.
unsigned long windowOnScreen() {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    // The search ends with nothing when any window goes that it is looking at.
    std::string found;
    while (found.empty() && std::chrono::steady_clock::now() < deadline) {
        found = output({"xdotool", "search", "--onlyvisible", "--name", "^Orvalo$"});
    }
    return std::stoul(found);
}

/// A connection to the display.
class Display {
  public:
    Display() : display_(XOpenDisplay(nullptr)) {}
    ~Display() { XCloseDisplay(display_); }
    Display(const Display&) = delete;
    Display& operator=(const Display&) = delete;

    ApplicationPlace placeOf(unsigned long window) const {
        XWindowAttributes attributes;
        XGetWindowAttributes(display_, window, &attributes);
        ApplicationPlace result{0, 0, attributes.width, attributes.height};
        Window ignored = 0;
        XTranslateCoordinates(display_, window, attributes.root, 0, 0, &result.x, &result.y,
                              &ignored);
        return result;
    }

    std::vector<unsigned long> viewableChildren(unsigned long window) const {
        Window root = 0;
        Window parent = 0;
        Window* children = nullptr;
        unsigned count = 0;
        XQueryTree(display_, window, &root, &parent, &children, &count);
        std::vector<unsigned long> result;
        for (unsigned index = 0; index < count; ++index) {
            XWindowAttributes attributes;
            XGetWindowAttributes(display_, children[index], &attributes);
            if (attributes.map_state == IsViewable) {
                result.push_back(children[index]);
            }
        }
        XFree(children);
        return result;
    }

  private:
    ::Display* display_;
};

}  // namespace

ApplicationFixture::ApplicationFixture() {
    startDesktop();
    startSession();
    environment = {{"ORVALO_AUDIO_OUTPUT", "null"},
                   {"LV2_PATH", "/nowhere"},
                   {"GTK_A11Y", "atspi"},
                   {"XDG_DATA_HOME", (folder.path() / "data").string()},
                   {"XDG_CONFIG_HOME", (folder.path() / "config").string()},
                   // For the sanitizers, where there are any: deep stacks, because the toolkit's
                   // leaks are known by theirs.
                   {"ASAN_OPTIONS", "fast_unwind_on_malloc=0:malloc_context_size=16"},
                   {"LSAN_OPTIONS", "suppressions=" ORVALO_TOOLKIT_LEAKS ":print_suppressions=0"}};
}

Lines ApplicationFixture::start() {
    program = startAgain();
    auto lines = program->readUntil("WARNING: Audio unit is nil (yet?).");
    EXPECT_TRUE(eventually([this] { return tree.shows("Play"); }));
    focus();
    return lines;
}

std::string ApplicationFixture::lineWith(const std::string& text) const {
    const auto lines = program->readUntil(text);
    return lines.empty() ? "" : lines.back();
}

std::unique_ptr<Program> ApplicationFixture::startAgain() const {
    return std::make_unique<Program>(
        std::vector<std::string>{ORVALO_TEST_STAGE "/bin/orvalo-on-loopback"}, environment);
}

void ApplicationFixture::focus() {
    act({"mousemove", "2", "2"});
    act({"search", "--sync", "--onlyvisible", "--name", "^Orvalo$", "windowactivate", "--sync"});
}

void ApplicationFixture::key(const std::string& name) {
    act({"key", name});
}

void ApplicationFixture::playAndStop() {
    key("space");
    EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine starting."),
              "AUEnginePlayer: Audio engine starting.");
    key("space");
    EXPECT_EQ(lineWith("AUEnginePlayer: Audio engine stopping."),
              "AUEnginePlayer: Audio engine stopping.");
}

bool ApplicationFixture::eventually(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
    }
    return true;
}

int ApplicationFixture::quit() {
    focus();
    key("ctrl+q");
    return program->wait();
}

ApplicationPlace ApplicationFixture::place() {
    const Display display;
    return display.placeOf(windowOnScreen());
}

std::optional<ApplicationPlace> ApplicationFixture::effectPlace() {
    const Display display;
    for (const auto window : display.viewableChildren(windowOnScreen())) {
        const auto found = display.placeOf(window);
        // Toolkits also keep windows of a pixel or so.
        if (found.width > 10 && found.height > 10) {
            return found;
        }
    }
    return std::nullopt;
}

void ApplicationFixture::pointAt(const EffectSpot& spot) {
    const auto effect = effectPlace().value_or(ApplicationPlace{});
    act({"mousemove", std::to_string(effect.x + static_cast<int>(spot.x * effect.width)),
         std::to_string(effect.y + static_cast<int>(spot.y * effect.height))});
}

int ApplicationFixture::windowCount() {
    const auto windows = output({"xdotool", "search", "--onlyvisible", "--name", "^Orvalo$"});
    return static_cast<int>(std::count(windows.begin(), windows.end(), '\n'));
}

}  // namespace orvalo::testing
