#pragma once

#include <sys/types.h>

#include <string>

namespace orvalo::testing {

/// A virtual display of its own, Xvfb at a number that nobody uses, for as long as the object
/// lives: DISPLAY leads to it, and the toolkit is told to use X11. One object at a time, made
/// before the toolkit is initialised; it outlives all use of the display.
class XServer {
  public:
    /// screen: extent in pixels and depth. Throws std::runtime_error when no server comes up.
    explicit XServer(const std::string& screen = "1280x960x24");
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// What DISPLAY is set to, such as ":3".
    const std::string& display() const { return display_; }

  private:
    pid_t process_;
    std::string display_;
};

}  // namespace orvalo::testing
