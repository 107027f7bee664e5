#include "platform/plugin-ui/x11/X11Errors.h"

#include <X11/Xlib.h>
#include <glib.h>

#include <array>
#include <mutex>
#include <set>
#include <utility>

namespace orvalo {

namespace {

struct Known {
    std::mutex mutex;
    std::set<Display*> ignored;
    std::set<Display*> toolkits;
    std::set<std::pair<int, int>> reported;  // Error code and request code.
    XErrorHandler before = nullptr;
};

Known& known() {
    // Never destroyed: errors may come as long as the process lives.
    static auto* const all = new Known;
    return *all;
}

void report(Display* display, const XErrorEvent& error) {
    std::array<char, 128> text{};
    XGetErrorText(display, error.error_code, text.data(), static_cast<int>(text.size()));
    g_warning("The UI of an effect made an X11 error (%s, request %d.%d); ignored.", text.data(),
              error.request_code, error.minor_code);
}

int handle(Display* display, XErrorEvent* error) {
    auto& all = known();
    XErrorHandler before = nullptr;
    {
        const std::scoped_lock lock(all.mutex);
        if (all.ignored.contains(display)) {
            return 0;
        }
        if (all.toolkits.contains(display)) {
            before = all.before;
        } else if (!all.reported.insert({error->error_code, error->request_code}).second) {
            return 0;
        }
    }
    if (before != nullptr) {
        return before(display, error);
    }
    report(display, *error);
    return 0;
}

}  // namespace

void X11Errors::takeOver() {
    const auto before = XSetErrorHandler(handle);
    auto& all = known();
    const std::scoped_lock lock(all.mutex);
    // What a UI set is not what the toolkit counts on.
    if (all.before == nullptr && before != handle) {
        all.before = before;
    }
}

void X11Errors::ignore(Display* display, bool isIgnored) {
    auto& all = known();
    const std::scoped_lock lock(all.mutex);
    if (isIgnored) {
        all.ignored.insert(display);
    } else {
        all.ignored.erase(display);
    }
}

void X11Errors::leaveToToolkit(Display* display) {
    auto& all = known();
    const std::scoped_lock lock(all.mutex);
    all.toolkits.insert(display);
}

}  // namespace orvalo
