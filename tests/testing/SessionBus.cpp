#include "tests/testing/SessionBus.h"

#include <gio/gio.h>

#include "platform/foundation/GLibPointer.h"
#include "tests/testing/Program.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

namespace {

/// The services that the bus starts get this folder for their sockets. The one of assistive
/// technology has the same name for every bus. A program says so to the bus: a connection here
/// would start a thread, beside which the tests may not change the environment.
void setRuntimeFolder(const std::string& folder) {
    Program({"dbus-update-activation-environment", "XDG_RUNTIME_DIR=" + folder}).wait();
}

}  // namespace

void startSessionBus() {
    static const TemporaryFolder runtime;
    static auto* const bus = [] {
        auto* made = g_test_dbus_new(G_TEST_DBUS_NONE);
        g_test_dbus_add_service_dir(made, "/usr/share/dbus-1/services");
        // g_test_dbus_up() unsets DISPLAY.
        const GText display(g_strdup(g_getenv("DISPLAY")));
        g_test_dbus_up(made);
        setRuntimeFolder(runtime.path().string());
        if (display != nullptr) {
            g_setenv("DISPLAY", display.get(), TRUE);
        }
        return made;
    }();
    static_cast<void>(bus);
}

}  // namespace orvalo::testing
