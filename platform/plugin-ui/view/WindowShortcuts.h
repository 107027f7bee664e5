#pragma once

#include <gtk/gtk.h>

#include <optional>

#include "platform/plugin-ui/x11/X11Keyboard.h"

namespace orvalo {

/// Whether the key is Tab, and then whether it moves backwards.
std::optional<bool> tabDirection(GtkWidget* widget, const X11Key& key);

/// Activates the window's shortcut for a key that did not reach GTK, such as one that a plug-in UI
/// does not use. Looks at the shortcut controllers of mapped, sensitive widgets, except for local
/// ones, whose widget would need the keyboard focus. widget: any in the window. False when no
/// shortcut took the key. The shortcut may destroy the window. Main thread.
bool activateShortcut(GtkWidget* widget, const X11Key& key);

}  // namespace orvalo
