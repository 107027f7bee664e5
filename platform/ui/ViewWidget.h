#pragma once

#include <gtk/gtk.h>

namespace orvalo {

/// The type "UIView" of the toolkit, also for layouts: a widget that places what it holds by a
/// UIViewLayout and clips it. Its property "aspect-ratio" is that of setAspectRatio().
GType viewWidgetType();

}  // namespace orvalo
