#pragma once

#include <sys/types.h>

#include <string>

namespace orvalo::testing {

/// A private X server without a screen to look at, for as long as the object lives. It becomes
/// the process's DISPLAY.
class XServer {
  public:
    XServer();
    ~XServer() { stop(); }
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// Ends the server at once, as a crash would.
    void stop();

  private:
    pid_t process_ = -1;
};

}  // namespace orvalo::testing
