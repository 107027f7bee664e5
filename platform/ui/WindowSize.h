#pragma once

using GtkWindow = struct _GtkWindow;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo {

/// Gives the application's window the size that it had when the application ended last, and saves
/// its size at the end. Call it before the window is shown. Main thread.
void keepWindowSize(GtkWindow* window);

}  // namespace orvalo
