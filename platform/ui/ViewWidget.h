#pragma once

#include <gtk/gtk.h>

namespace orvalo {

/// The type "UIView" of the toolkit, also for layouts: a widget that places what it holds by
/// constraints and clips it.
GType viewWidgetType();

}  // namespace orvalo
