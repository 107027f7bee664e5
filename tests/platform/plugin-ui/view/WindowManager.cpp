#include "tests/platform/plugin-ui/view/WindowManager.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

void startWindowManager() {
    auto* display = screen();
    const auto isThere = [display] {
        const auto name = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
        Atom type = 0;
        int format = 0;
        unsigned long count = 0;
        unsigned long rest = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(display, DefaultRootWindow(display), name, 0, 1, False, AnyPropertyType,
                           &type, &format, &count, &rest, &data);
        if (data != nullptr) {
            XFree(data);
        }
        return count > 0;
    };
    if (isThere()) {
        return;
    }
    if (fork() == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        const int null = open("/dev/null", O_RDWR);
        for (const int standard : {0, 1, 2}) {
            dup2(null, standard);
        }
        execlp("openbox", "openbox", "--sm-disable", nullptr);
        _exit(127);
    }
    if (!pollUntil(isThere)) {
        throw std::runtime_error("The window manager did not start.");
    }
}

}  // namespace orvalo::testing
