// fake-portal COLOR-SCHEME ANIMATIONS FOLDER: what xdg-desktop-portal offers of settings, opening
// addresses and choosing folders. Prints "ready" and each wish as a line. COLOR-SCHEME: 1 dark, 2
// light; SIGUSR1 makes it light. ANIMATIONS: true or false. FOLDER: what the user chooses.

#include <gio/gio.h>
#include <glib-unix.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "platform/foundation/GLibPointer.h"

namespace {

using namespace orvalo;

using GVariantPointer = std::unique_ptr<GVariant, Release<g_variant_unref>>;

constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kSettings = "org.freedesktop.portal.Settings";
constexpr const char* kAppearance = "org.freedesktop.appearance";
constexpr const char* kColorScheme = "color-scheme";
constexpr const char* kInterfaces = R"(<node>
  <interface name='org.freedesktop.portal.Settings'>
    <method name='ReadAll'>
      <arg type='as' direction='in'/>
      <arg type='a{sa{sv}}' direction='out'/>
    </method>
    <method name='Read'>
      <arg type='s' direction='in'/>
      <arg type='s' direction='in'/>
      <arg type='v' direction='out'/>
    </method>
    <signal name='SettingChanged'><arg type='s'/><arg type='s'/><arg type='v'/></signal>
    <property name='version' type='u' access='read'/>
  </interface>
  <interface name='org.freedesktop.portal.OpenURI'>
    <method name='OpenURI'>
      <arg type='s' direction='in'/>
      <arg type='s' direction='in'/>
      <arg type='a{sv}' direction='in'/>
      <arg type='o' direction='out'/>
    </method>
    <property name='version' type='u' access='read'/>
  </interface>
  <interface name='org.freedesktop.portal.FileChooser'>
    <method name='OpenFile'>
      <arg type='s' direction='in'/>
      <arg type='s' direction='in'/>
      <arg type='a{sv}' direction='in'/>
      <arg type='o' direction='out'/>
    </method>
    <property name='version' type='u' access='read'/>
  </interface>
</node>)";

class FakePortal {
  public:
    FakePortal(unsigned colorScheme, bool hasAnimations, std::string folder)
        : colorScheme_(colorScheme), hasAnimations_(hasAnimations), folder_(std::move(folder)) {}

    void registerOn(GDBusConnection* bus) {
        bus_ = bus;
        static const GDBusInterfaceVTable table{
            [](GDBusConnection* /*bus*/, const char* sender, const char* /*path*/,
               const char* /*interface*/, const char* method, GVariant* arguments,
               GDBusMethodInvocation* invocation, void* portal) {
                static_cast<FakePortal*>(portal)->call(sender, method, arguments, invocation);
            },
            // The only property is the version; below 3, folders cannot be chosen.
            [](GDBusConnection*, const char*, const char*, const char*, const char*, GError**,
               void*) { return g_variant_new_uint32(3); },
            nullptr,
            {}};
        auto* node = g_dbus_node_info_new_for_xml(kInterfaces, nullptr);
        for (auto** interface = node->interfaces; *interface != nullptr; ++interface) {
            g_dbus_connection_register_object(bus, kPath, *interface, &table, this, nullptr,
                                              nullptr);
        }
        g_dbus_node_info_unref(node);
    }

    void makeLight() {
        colorScheme_ = 2;
        auto* value = g_variant_new_uint32(colorScheme_);
        g_dbus_connection_emit_signal(bus_, nullptr, kPath, kSettings, "SettingChanged",
                                      g_variant_new("(ssv)", kAppearance, kColorScheme, value),
                                      nullptr);
    }

  private:
    void call(const std::string& sender, const std::string& method, GVariant* arguments,
              GDBusMethodInvocation* invocation) const {
        if (method == "ReadAll") {
            g_dbus_method_invocation_return_value(invocation, settings());
        } else if (method == "Read") {
            read(arguments, invocation);
        } else if (method == "OpenURI") {
            g_print("OpenURI %s\n", g_variant_get_string(child(arguments, 1).get(), nullptr));
            answer(sender, arguments, invocation, g_variant_new("a{sv}", nullptr));
        } else {
            const auto options = child(arguments, 2);
            gboolean isFolder = FALSE;
            g_variant_lookup(options.get(), "directory", "b", &isFolder);
            g_print("OpenFile %s%s\n", g_variant_get_string(child(arguments, 1).get(), nullptr),
                    isFolder == FALSE ? "" : ", a folder");
            const GText address(g_filename_to_uri(folder_.c_str(), nullptr, nullptr));
            const std::array<const char*, 1> addresses{address.get()};
            GVariantDict results;
            g_variant_dict_init(&results, nullptr);
            g_variant_dict_insert_value(&results, "uris",
                                        g_variant_new_strv(addresses.data(), addresses.size()));
            answer(sender, arguments, invocation, g_variant_dict_end(&results));
        }
    }

    static GVariantPointer child(GVariant* tuple, gsize index) {
        return GVariantPointer(g_variant_get_child_value(tuple, index));
    }

    void read(GVariant* arguments, GDBusMethodInvocation* invocation) const {
        const char* space = nullptr;
        const char* key = nullptr;
        g_variant_get(arguments, "(&s&s)", &space, &key);
        const GVariantPointer all(g_variant_ref_sink(settings()));
        const GVariantPointer spaces(g_variant_get_child_value(all.get(), 0));
        const GVariantPointer values(
            g_variant_lookup_value(spaces.get(), space, G_VARIANT_TYPE_VARDICT));
        const GVariantPointer value(
            values == nullptr ? nullptr : g_variant_lookup_value(values.get(), key, nullptr));
        if (value == nullptr) {
            g_dbus_method_invocation_return_dbus_error(
                invocation, "org.freedesktop.portal.Error.NotFound", "There is no such setting.");
        } else {
            // A variant in a variant, as the portal's first version has it.
            g_dbus_method_invocation_return_value(
                invocation, g_variant_new("(v)", g_variant_new_variant(value.get())));
        }
    }

    GVariant* settings() const {
        return g_variant_new_parsed(
            "({%s: {%s: <%u>}, "
            "'org.gnome.desktop.interface': {'enable-animations': <%b>}},)",
            kAppearance, kColorScheme, colorScheme_, hasAnimations_ ? TRUE : FALSE);
    }

    /// Answers the call with a request, and that with success and the results.
    void answer(const std::string& sender, GVariant* arguments, GDBusMethodInvocation* invocation,
                GVariant* results) const {
        const char* token = nullptr;
        g_variant_lookup(child(arguments, 2).get(), "handle_token", "&s", &token);
        auto name = sender.substr(1);
        std::replace(name.begin(), name.end(), '.', '_');
        const auto request = std::string(kPath) + "/request/" + name + "/" + token;
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(o)", request.c_str()));
        g_dbus_connection_emit_signal(bus_, sender.c_str(), request.c_str(),
                                      "org.freedesktop.portal.Request", "Response",
                                      g_variant_new("(u@a{sv})", 0U, results), nullptr);
    }

    GDBusConnection* bus_ = nullptr;
    unsigned colorScheme_;
    const bool hasAnimations_;
    const std::string folder_;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        return EXIT_FAILURE;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    FakePortal portal(static_cast<unsigned>(std::atoi(argv[1])), argv[2] == std::string("true"),
                      argv[3]);
    const auto registerObjects = +[](GDBusConnection* bus, const char*, void* made) {
        static_cast<FakePortal*>(made)->registerOn(bus);
    };
    const auto sayReady = +[](GDBusConnection*, const char*, void*) { g_print("ready\n"); };
    g_bus_own_name(G_BUS_TYPE_SESSION, "org.freedesktop.portal.Desktop",
                   G_BUS_NAME_OWNER_FLAGS_NONE, registerObjects, sayReady, nullptr, &portal,
                   nullptr);
    g_unix_signal_add(
        SIGUSR1,
        [](void* made) -> gboolean {
            static_cast<FakePortal*>(made)->makeLight();
            return G_SOURCE_CONTINUE;
        },
        &portal);
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
