#include "platform/ui/ToolkitStart.h"

#include <adwaita.h>
#include <glib.h>
#include <gtk/gtk.h>

#include <optional>

namespace orvalo {

namespace {

/// Sets a variable of the environment for the object's life.
class Variable {
  public:
    Variable(const char* name, const std::string& value) : name_(name) {
        if (const auto* former = g_getenv(name)) {
            former_ = former;
        }
        g_setenv(name, value.c_str(), TRUE);
    }
    ~Variable() {
        if (former_) {
            g_setenv(name_, former_->c_str(), TRUE);
        } else {
            g_unsetenv(name_);
        }
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    const char* const name_;
    std::optional<std::string> former_;
};

std::string valueOr(const char* name, const char* otherwise) {
    const auto* value = g_getenv(name);
    return value == nullptr || *value == '\0' ? otherwise : value;
}

}  // namespace

bool startToolkit(const std::string& dataFolder) {
    // Without OpenGL the first frame comes sooner, and plug-in UIs that use OpenGL are not
    // disturbed. The toolkit reads GSK_RENDERER for every window. The other variables are restored
    // below for the programs that this one starts.
    g_setenv("GSK_RENDERER", "cairo", FALSE);
    {
        // GTK 4.16 has moved the switch, and warns of the former one.
        const bool isMoved = gtk_get_minor_version() >= 16;
        const auto* name = isMoved ? "GDK_DISABLE" : "GDK_DEBUG";
        const Variable drawing(name, valueOr(name, isMoved ? "gl" : "gl-disable"));
        // The style library replaces the toolkit's theme, so the toolkit need not load it first.
        const Variable theme("GTK_THEME", valueOr("GTK_THEME", "Adwaita-empty"));
        // Set before the toolkit reads the icons, so that it reads them once. The default is the
        // one of the XDG Base Directory Specification.
        const Variable folders(
            "XDG_DATA_DIRS",
            valueOr("XDG_DATA_DIRS", "/usr/local/share:/usr/share") + ":" + dataFolder);
        g_get_system_data_dirs();
        if (gtk_init_check() == FALSE) {
            return false;
        }
        gtk_settings_get_default();
    }
    adw_init();
    return true;
}

}  // namespace orvalo
