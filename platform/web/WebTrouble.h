#pragma once

#include <glib.h>

using WebKitWebView = struct _WebKitWebView;  // NOLINT(bugprone-reserved-identifier): WebKit's own.

namespace orvalo {

/// Whether a load was stopped by a delegate or by the view.
bool isWanted(const GError* error);

/// Logs the view's failed loads and the end of its page's process; the view stays as it is and can
/// load again. Refuses and logs downloads, for which there is no place. Main thread.
void reportTrouble(WebKitWebView* view);

}  // namespace orvalo
