#pragma once

#include <sys/types.h>

#include <string>

namespace orvalo::testing {

/// A private virtual X server, which lives as long as the object. Sets the process's DISPLAY.
class XServer {
  public:
    XServer();
    ~XServer() { stop(); }
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// Kills the server, like a crash.
    void stop();

  private:
    pid_t process_ = -1;
};

}  // namespace orvalo::testing
