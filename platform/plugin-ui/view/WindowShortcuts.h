#pragma once

#include <gtk/gtk.h>

#include "platform/plugin-ui/x11/X11Key.h"

namespace orvalo {

/// Does what the shortcuts of a widget's whole window say of a key that was not struck in the
/// toolkit's own surface; those of widgets that are off the screen, or out of use, say nothing.
/// Shortcuts that only count while their widget has the keyboard are left out: a foreign window has
/// it. False when no shortcut has taken the key. The window may be gone afterwards. Main thread.
bool activateShortcut(GtkWidget* widget, const X11Key& key);

}  // namespace orvalo
