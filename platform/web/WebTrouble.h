#pragma once

using WebKitWebView = struct _WebKitWebView;  // NOLINT(bugprone-reserved-identifier): WebKit's own.

namespace orvalo {

/// From now on a line on standard error tells what a web view could not load, and that its page's
/// process has ended; the view itself shows nothing of either and can load again. Downloads are
/// refused, with a line: nobody decides where they would go. Main thread.
void reportTrouble(WebKitWebView* view);

}  // namespace orvalo
