#include "platform/plugin-ui/x11/X11Errors.h"

#include <X11/Xlib.h>
#include <glib.h>

#include <array>
#include <mutex>
#include <set>
#include <utility>

namespace orvalo {

namespace {

struct State {
    std::mutex mutex;
    std::set<Display*> ignored;
    std::set<Display*> toolkits;
    std::set<std::pair<int, int>> reported;  // Error code and request code.
    XErrorHandler previous = nullptr;
};

State& state() {
    // Never destroyed, because errors may occur until the process ends.
    static auto* const shared = new State;
    return *shared;
}

void report(Display* display, const XErrorEvent& error) {
    std::array<char, 128> text{};
    XGetErrorText(display, error.error_code, text.data(), static_cast<int>(text.size()));
    g_warning("The UI of an effect made an X11 error (%s, request %d.%d); ignored.", text.data(),
              error.request_code, error.minor_code);
}

int handle(Display* display, XErrorEvent* error) {
    auto& shared = state();
    XErrorHandler previous = nullptr;
    {
        const std::scoped_lock lock(shared.mutex);
        if (shared.ignored.contains(display)) {
            return 0;
        }
        if (shared.toolkits.contains(display)) {
            previous = shared.previous;
        } else if (!shared.reported.insert({error->error_code, error->request_code}).second) {
            return 0;
        }
    }
    if (previous != nullptr) {
        return previous(display, error);
    }
    report(display, *error);
    return 0;
}

}  // namespace

void X11Errors::installHandler() {
    const auto previous = XSetErrorHandler(handle);
    auto& shared = state();
    const std::scoped_lock lock(shared.mutex);
    // Keeps the first handler, which the toolkit may rely on; later ones belong to UIs.
    if (shared.previous == nullptr && previous != handle) {
        shared.previous = previous;
    }
}

void X11Errors::ignore(Display* display, bool isIgnored) {
    auto& shared = state();
    const std::scoped_lock lock(shared.mutex);
    if (isIgnored) {
        shared.ignored.insert(display);
    } else {
        shared.ignored.erase(display);
    }
}

void X11Errors::leaveToToolkit(Display* display) {
    auto& shared = state();
    const std::scoped_lock lock(shared.mutex);
    shared.toolkits.insert(display);
}

}  // namespace orvalo
