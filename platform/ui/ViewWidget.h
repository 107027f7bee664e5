#pragma once

#include <gtk/gtk.h>

namespace orvalo {

/// The widget type "UIView", also for layouts: places its children by a UIViewLayout and clips
/// them. Its property "aspect-ratio" is that of setAspectRatio().
GType viewWidgetType();

}  // namespace orvalo
