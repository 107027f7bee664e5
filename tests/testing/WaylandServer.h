#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "tests/testing/ServerProcess.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

/// A Wayland compositor without a screen and without input devices, weston, while the object lives.
/// Sets WAYLAND_DISPLAY and XDG_RUNTIME_DIR, and unsets GDK_BACKEND. With Xwayland it sets DISPLAY,
/// otherwise unsets it. At most one object at a time.
class WaylandServer {
  public:
    enum class X11 { none, xwayland };

    /// Throws std::runtime_error when weston does not start.
    explicit WaylandServer(X11 x11);

    /// A picture of the screen, as a PNG file in a folder that disappears with the object.
    std::filesystem::path picture();

  private:
    bool isReady(X11 x11) const;

    TemporaryFolder folder_;
    std::unique_ptr<ServerProcess> process_;
};

}  // namespace orvalo::testing
