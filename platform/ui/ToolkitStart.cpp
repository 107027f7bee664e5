#include "platform/ui/ToolkitStart.h"

#include <adwaita.h>
#include <glib.h>
#include <gtk/gtk.h>

#include <optional>

namespace orvalo {

namespace {

/// A variable of the environment that has another value for the object's life.
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
    // Windows that mostly stand still are on screen sooner without OpenGL, and out of the way of
    // effects' UIs that use it themselves. The toolkit looks for the renderer's name at
    // every window; what turns OpenGL off the programs that this one starts may need.
    g_setenv("GSK_RENDERER", "cairo", FALSE);
    {
        const Variable drawing("GDK_DEBUG", valueOr("GDK_DEBUG", "gl-disable"));
        // The style library puts a theme of its own in place of the toolkit's, which need not be
        // read before.
        const Variable theme("GTK_THEME", valueOr("GTK_THEME", "Adwaita-empty"));
        // Known from the start, so that the icons are not read a second time. The default is the
        // base directory specification's.
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
