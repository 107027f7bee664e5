#include "tests/testing/SessionBus.h"

#include <gio/gio.h>

#include <string>

namespace orvalo::testing {

void startSessionBus() {
    static auto* const bus = [] {
        auto* made = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_add_service_dir(made, "/usr/share/dbus-1/services");
        // g_test_dbus_up() unsets DISPLAY.
        const std::string display = g_getenv("DISPLAY");
        g_test_dbus_up(made);
        g_setenv("DISPLAY", display.c_str(), TRUE);
        return made;
    }();
    static_cast<void>(bus);
}

}  // namespace orvalo::testing
