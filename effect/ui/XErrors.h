#pragma once

#include <X11/Xlib.h>

namespace orvalo::effect::ui {

/// From now on the server's errors about requests on this connection are dropped, because the
/// windows they speak of may go away at any moment. Only this connection's: the process's error
/// handler, which is the host's, stays as it is and hears nothing of them.
void dropErrors(Display* display);

}  // namespace orvalo::effect::ui
