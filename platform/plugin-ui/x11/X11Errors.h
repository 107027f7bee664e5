#pragma once

using Display = struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): Xlib's own.

namespace orvalo {

/// The process's handler of X errors; Xlib's own ends the process. Errors of the host's connections
/// are ignored: a UI may destroy its windows at any time. Errors of the toolkit's connection go to
/// the previous handler. Errors of other connections, which UIs open, are logged as a warning, once
/// for each kind, and ignored. Any thread.
class X11Errors {
  public:
    /// Also replaces a handler that a UI has installed.
    static void installHandler();
    /// Ignores the errors of a connection, or no longer.
    static void ignore(Display* display, bool isIgnored);
    /// Leaves the errors of a connection to the previous handler.
    static void leaveToToolkit(Display* display);
};

}  // namespace orvalo
