#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/testing/ServerProcess.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

/// A Wayland compositor without a screen, sway, with a keyboard and a pointer, while the object
/// lives. Sets WAYLAND_DISPLAY, XDG_RUNTIME_DIR and SWAYSOCK, and unsets GDK_BACKEND. With Xwayland
/// it sets DISPLAY, otherwise unsets it. At most one object at a time.
class WaylandServer {
  public:
    enum class X11 { none, xwayland };

    /// Throws std::runtime_error when sway does not start.
    explicit WaylandServer(X11 x11);

    /// Waits until sway shows an X11 window, and shows that of this name again where sway forgot
    /// it: sway 1.10 does not show about one of 60 windows that X has mapped.
    /// https://github.com/swaywm/sway/issues/8779
    static void showX11Window(const std::string& name);
    /// Types with wtype's arguments, such as -k space.
    static void type(std::vector<std::string> arguments);
    /// Moves the pointer.
    static void pointAt(int x, int y);
    /// Clicks where the pointer is.
    static void click();
    /// A picture of the screen, as a PNG file that disappears with the object.
    std::filesystem::path picture();

  private:
    bool isReady(X11 x11) const;

    TemporaryFolder folder_;
    std::unique_ptr<ServerProcess> process_;
    std::unique_ptr<ServerProcess> keyboard_;
};

}  // namespace orvalo::testing
