#pragma once

#include <X11/Xlib.h>

namespace orvalo::effect::ui {

/// Drops the X errors of this connection: the windows that its requests name may be destroyed at
/// any moment. Other connections and the process's error handler, which belongs to the host, are
/// unaffected.
void dropErrors(Display* display);

}  // namespace orvalo::effect::ui
