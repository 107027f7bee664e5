#pragma once

#include "platform/plugin-ui/x11/X11Geometry.h"

using GtkWidget = struct _GtkWidget;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo::testing {

/// Where a widget of a shown window is on the screen, whose scale is 1.
X11Rect placeOf(GtkWidget* widget);

}  // namespace orvalo::testing
