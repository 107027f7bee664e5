#pragma once

#include <gtk/gtk.h>

#include "platform/foundation/CGRect.h"

namespace orvalo {

/// The type "UIViewLayout", also for layouts: a GtkConstraintLayout that also places children with
/// a held frame or an aspect ratio. It requests no size.
GType viewLayoutType();

/// Places a widget at a frame in its parent, regardless of constraints; null places it by the
/// constraints again. The frame must stay valid until another call replaces it.
void holdFrame(GtkWidget* widget, const CGRect* frame);

/// Keeps a widget at width / height = ratio, as large as possible and centred in the rectangle that
/// the constraints give it. 0: fills that rectangle.
void setAspectRatio(GtkWidget* widget, double ratio);

}  // namespace orvalo
