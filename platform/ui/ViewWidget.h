#pragma once

#include <gtk/gtk.h>

#include "platform/foundation/CGRect.h"

namespace orvalo {

/// The type "UIView" of the toolkit, also for layouts: a widget that places what it holds by a
/// UIViewLayout and clips it.
GType viewWidgetType();

/// The type "UIViewLayout", also for layouts: a GtkConstraintLayout, but for widgets whose frames
/// are held.
GType viewLayoutType();

/// Holds a widget in a place of its parent, whatever the constraints say; null lets go. The frame
/// must live as long as it is held.
void holdFrame(GtkWidget* widget, const CGRect* frame);

}  // namespace orvalo
