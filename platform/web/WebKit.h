#pragma once

#include <webkit/webkit.h>

#include "platform/foundation/LateLibrary.h"

/// A function of WebKitGTK, as in lateWebKit(webkit_web_view_get_uri)(view). Main thread. WebKitGTK
/// needs 130 further libraries, which take 34 ms to load.
#define lateWebKit(name) ORVALO_LATE_FUNCTION(::orvalo::webkit(), name)

namespace orvalo {

/// WebKitGTK, loaded by the first call, which also starts the sandbox's trial. A fatal error when
/// it cannot be loaded. Main thread.
const LateLibrary& webkit();

}  // namespace orvalo
