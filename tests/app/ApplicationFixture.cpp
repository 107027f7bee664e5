#include "tests/app/ApplicationFixture.h"

#include <X11/Xlib.h>

#include <algorithm>
#include <iostream>

#include "tests/testing/SessionBus.h"
#include "tests/testing/WaitUntil.h"

#if defined(__SANITIZE_ADDRESS__)

// Only leaks of the application's process count, not of the test's.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name.
extern "C" int __lsan_is_turned_off();
int __lsan_is_turned_off() {
    return 1;
}

#endif

namespace orvalo::testing {

namespace {

/// The name of an effect may follow.
constexpr const char* kName = "^Orvalo( |$)";

/// A connection that grabs the X server, so that the display does not change while it is open.
class Display {
  public:
    Display() : display_(XOpenDisplay(nullptr)) { XGrabServer(display_); }
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

    unsigned long keyboardFocus() const {
        Window focus = None;
        int ignored = 0;
        XGetInputFocus(display_, &focus, &ignored);
        return focus;
    }

    /// Whether `inner` is `outer` or inside it.
    bool isInside(unsigned long inner, unsigned long outer) const {
        Window root = 0;
        Window parent = inner;
        while (parent > PointerRoot && parent != outer && parent != root) {
            Window* children = nullptr;
            unsigned count = 0;
            if (XQueryTree(display_, parent, &root, &parent, &children, &count) == 0) {
                return false;
            }
            XFree(children);
        }
        return parent == outer;
    }

    /// The plug-in UI in the application's window, or 0.
    unsigned long effectIn(unsigned long window) const {
        for (const auto child : viewableChildren(window)) {
            // Toolkits also keep tiny windows.
            if (const auto place = placeOf(child); place.width > 10 && place.height > 10) {
                return child;
            }
        }
        return 0;
    }

  private:
    ::Display* display_;
};

/// The last line of the search for the effect, and the last line of the screen.
constexpr const char* kEndOfSearch = "WARNING: Audio unit is nil (yet?).";
constexpr const char* kEndOfScreen = "ViewController: The app's resources path is: ";

}  // namespace

ApplicationFixture::ApplicationFixture() : executable(ORVALO_TEST_STAGE "/bin/orvalo-on-loopback") {
    startDesktop();
    startSessionBus();
    environment = {{"ORVALO_AUDIO_OUTPUT", "null"},
                   {"LV2_PATH", "/nowhere"},
                   {"GTK_A11Y", "atspi"},
                   {"XDG_DATA_HOME", (folder.path() / "data").string()},
                   {"XDG_CONFIG_HOME", (folder.path() / "config").string()},
                   {"XDG_STATE_HOME", (folder.path() / "state").string()},
                   // For sanitizers: deep stacks, by which the toolkit's leaks are recognised.
                   {"ASAN_OPTIONS", "fast_unwind_on_malloc=0:malloc_context_size=16"},
                   {"LSAN_OPTIONS", "suppressions=" ORVALO_TOOLKIT_LEAKS ":print_suppressions=0"}};
}

void ApplicationFixture::TearDown() {
    if (HasFailure() && program != nullptr) {
        std::cerr << "The application's standard error:\n" << program->standardError();
    }
}

Lines ApplicationFixture::start() {
    program = startAgain();
    auto lines = program->readUntil(kEndOfSearch);
    if (std::ranges::none_of(lines,
                             [](const auto& line) { return line.starts_with(kEndOfScreen); })) {
        const auto rest = program->readUntil(kEndOfScreen);
        lines.insert(lines.end(), rest.begin(), rest.end());
    }
    EXPECT_TRUE(pollUntil([this] { return tree.shows("Play"); }));
    focus();
    return lines;
}

std::string ApplicationFixture::lineWith(const std::string& text) const {
    const auto lines = program->readUntil(text);
    return lines.empty() ? "" : lines.back();
}

std::unique_ptr<Program> ApplicationFixture::startAgain() const {
    return std::make_unique<Program>(std::vector<std::string>{executable}, environment);
}

void ApplicationFixture::installWithoutEffect() {
    namespace fs = std::filesystem;
    fs::create_directories(installed() / "bin");
    fs::create_directories(installed() / "lib");
    const fs::path stage = ORVALO_TEST_STAGE;
    fs::copy_file(executable, installed() / "bin/orvalo-on-loopback");
    for (const auto* part : {"share", "libexec", "lib/orvalo"}) {
        fs::create_directory_symlink(stage / part, installed() / part);
    }
    executable = installed() / "bin/orvalo-on-loopback";
}

void ApplicationFixture::focus() {
    act({"mousemove", "2", "2"});
    activateWindow(kName);
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

int ApplicationFixture::quit() {
    focus();
    key("ctrl+q");
    return program->wait();
}

ApplicationPlace ApplicationFixture::place() {
    const auto window = windowNamed(kName);
    const Display display;
    return display.placeOf(window);
}

void ApplicationFixture::resize(int width, int height) {
    act({"windowsize", "--sync", std::to_string(windowNamed(kName)), std::to_string(width),
         std::to_string(height)});
}

std::optional<ApplicationPlace> ApplicationFixture::effectPlace() {
    const auto window = windowNamed(kName);
    const Display display;
    if (const auto effect = display.effectIn(window); effect != 0) {
        return display.placeOf(effect);
    }
    return std::nullopt;
}

void ApplicationFixture::pointAt(const EffectSpot& spot) {
    const auto effect = effectPlace().value_or(ApplicationPlace{});
    act({"mousemove", std::to_string(effect.x + static_cast<int>(spot.x * effect.width)),
         std::to_string(effect.y + static_cast<int>(spot.y * effect.height))});
}

void ApplicationFixture::clickIntoField(const EffectSpot& spot) {
    pointAt(spot);
    act({"click", "1"});
    // The focus is in the plug-in UI, or on the application's window, which passes keys to the
    // window under the pointer.
    EXPECT_TRUE(pollUntil([] {
        const auto window = windowNamed(kName);
        const Display display;
        const auto focus = display.keyboardFocus();
        const auto effect = display.effectIn(window);
        return focus == window || (effect != 0 && display.isInside(focus, effect));
    }));
}

bool ApplicationFixture::hasOwnFocus() {
    const auto window = windowNamed(kName);
    const Display display;
    const auto focus = display.keyboardFocus();
    const auto effect = display.effectIn(window);
    return focus != window && display.isInside(focus, window) &&
           (effect == 0 || !display.isInside(focus, effect));
}

int ApplicationFixture::windowCount() {
    return static_cast<int>(windowsNamed(kName).size());
}

}  // namespace orvalo::testing
