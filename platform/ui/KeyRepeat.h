#pragma once

#include <gtk/gtk.h>

namespace orvalo {

/// Tells the presses of a window's keys from the repeats of a held key. Main thread.

/// Begins to watch the window's keys. Call it once, before anything else watches them.
void watchKeys(GtkWidget* window);
/// Whether the last press that the window got is the repeat of a held key.
bool isKeyRepeated(GtkWidget* window);
/// The window gets its next press from elsewhere.
void forgetKeys(GtkWidget* window);

}  // namespace orvalo
