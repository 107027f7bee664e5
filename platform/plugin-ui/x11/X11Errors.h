#pragma once

using Display = struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): Xlib's own.

namespace orvalo {

/// Takes the deadliness out of X errors, which end a process unless somebody handles them. Errors
/// of the host's own connections are expected, because the windows of a UI can go at any
/// time, and ignored. Errors of the toolkit's connection are left to who handled them before.
/// Errors of other connections, which UIs open for themselves, are reported as a warning,
/// one of each kind, and ignored. Any thread.
class X11Errors {
  public:
    /// Takes over, also where a UI has set a handler of its own.
    static void takeOver();
    /// Has the errors of a connection ignored, or again not.
    static void ignore(Display* display, bool isIgnored);
    /// Leaves the errors of a connection to the handler from before.
    static void leaveToToolkit(Display* display);
};

}  // namespace orvalo
