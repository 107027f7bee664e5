#pragma once

#include <gtk/gtk.h>

#include "platform/foundation/CGRect.h"

namespace orvalo {

/// The type "UIViewLayout", also for layouts: a GtkConstraintLayout, but for widgets whose frames
/// are held, and for those with an aspect ratio. A view that is laid out asks for no extent.
GType viewLayoutType();

/// Holds a widget in a place of its parent, whatever the constraints say; null lets go. The frame
/// must live as long as it is held.
void holdFrame(GtkWidget* widget, const CGRect* frame);

/// Keeps a widget, as large as it can be and in the middle, at width : height = ratio inside the
/// place that the constraints give it; 0 lets it fill that.
void setAspectRatio(GtkWidget* widget, double ratio);

}  // namespace orvalo
