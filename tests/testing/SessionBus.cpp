#include "tests/testing/SessionBus.h"

#include <gio/gio.h>

#include "platform/foundation/GLibPointer.h"

namespace orvalo::testing {

void startSessionBus() {
    static auto* const bus = [] {
        auto* made = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_add_service_dir(made, "/usr/share/dbus-1/services");
        // g_test_dbus_up() unsets DISPLAY.
        const GText display(g_strdup(g_getenv("DISPLAY")));
        g_test_dbus_up(made);
        if (display != nullptr) {
            g_setenv("DISPLAY", display.get(), TRUE);
        }
        return made;
    }();
    static_cast<void>(bus);
}

}  // namespace orvalo::testing
