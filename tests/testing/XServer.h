#pragma once

#include <sys/types.h>

#include <string>

namespace orvalo::testing {

/// A virtual display, Xvfb at a free number, while the object lives. Sets DISPLAY and makes GTK use
/// X11. At most one object at a time; construct it before GTK is initialised and destroy it after
/// the last use of the display.
class XServer {
  public:
    /// screen: width x height x depth. Throws std::runtime_error when Xvfb does not start.
    explicit XServer(const std::string& screen = "1280x960x24");
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// Kills the server, as a crash would.
    void crash();

    /// The value of DISPLAY, such as ":3".
    const std::string& display() const { return display_; }

  private:
    pid_t process_ = -1;
    std::string display_;
};

}  // namespace orvalo::testing
