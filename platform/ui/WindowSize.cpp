#include "platform/ui/WindowSize.h"

#include <gtk/gtk.h>

#include <memory>

#include "platform/foundation/StateFile.h"
#include "platform/ui/UIApplication.h"

namespace orvalo {

namespace {

constexpr const char* kFile = "window.ini";
constexpr const char* kGroup = "Window";

void restore(GtkWindow* window) {
    const KeyFilePointer saved(g_key_file_new());
    if (g_key_file_load_from_file(saved.get(), stateFile(kFile).c_str(), G_KEY_FILE_NONE,
                                  nullptr) == FALSE) {
        return;
    }
    const int width = g_key_file_get_integer(saved.get(), kGroup, "Width", nullptr);
    const int height = g_key_file_get_integer(saved.get(), kGroup, "Height", nullptr);
    // A larger window than any screen cannot be drawn.
    constexpr int kLargest = 16384;
    if (width > 0 && height > 0 && width <= kLargest && height <= kLargest) {
        gtk_window_set_default_size(window, width, height);
    }
    if (g_key_file_get_boolean(saved.get(), kGroup, "Maximized", nullptr) != FALSE) {
        gtk_window_maximize(window);
    }
}

/// The size when it is not maximized, which the toolkit keeps as the default size.
struct Size {
    int width = 0;
    int height = 0;
    bool isMaximized = false;
};

void save(const Size& size) {
    const KeyFilePointer saved(g_key_file_new());
    g_key_file_set_integer(saved.get(), kGroup, "Width", size.width);
    g_key_file_set_integer(saved.get(), kGroup, "Height", size.height);
    g_key_file_set_boolean(saved.get(), kGroup, "Maximized", size.isMaximized ? TRUE : FALSE);
    saveStateFile(kFile, saved, "The window's size");
}

}  // namespace

void keepWindowSize(GtkWindow* window) {
    restore(window);
    // The window is gone at the application's end.
    const auto size = std::make_shared<Size>();
    const auto follow = [](GtkWindow* changed, GParamSpec* /*property*/, void* data) {
        auto& known = *static_cast<Size*>(data);
        gtk_window_get_default_size(changed, &known.width, &known.height);
        known.isMaximized = gtk_window_is_maximized(changed) != FALSE;
    };
    for (const auto* property : {"default-width", "default-height", "maximized"}) {
        g_signal_connect(window, (std::string("notify::") + property).c_str(), G_CALLBACK(+follow),
                         size.get());
    }
    UIApplication::shared()->atEnd([size] {
        if (size->width > 0 && size->height > 0) {
            save(*size);
        }
    });
}

}  // namespace orvalo
