#include "tests/testing/SessionBus.h"

#include <gio/gio.h>

#include "platform/foundation/GLibPointer.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

namespace {

/// The services that the bus starts get this folder for their sockets. The one of assistive
/// technology has the same name for every bus.
void setRuntimeFolder(GTestDBus* bus, const std::string& folder) {
    constexpr auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    const GObjectPointer<GDBusConnection> connection(g_dbus_connection_new_for_address_sync(
        g_test_dbus_get_bus_address(bus), flags, nullptr, nullptr, nullptr));
    auto* const environment = g_variant_new_parsed("({'XDG_RUNTIME_DIR': %s},)", folder.c_str());
    g_variant_unref(g_dbus_connection_call_sync(connection.get(), "org.freedesktop.DBus",
                                                "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                                "UpdateActivationEnvironment", environment, nullptr,
                                                G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
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
        setRuntimeFolder(made, runtime.path().string());
        if (display != nullptr) {
            g_setenv("DISPLAY", display.get(), TRUE);
        }
        return made;
    }();
    static_cast<void>(bus);
}

}  // namespace orvalo::testing
