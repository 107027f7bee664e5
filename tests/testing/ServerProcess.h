#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace orvalo::testing {

/// A running program whose output is discarded. The destructor terminates it and waits for its end.
class ServerProcess {
  public:
    explicit ServerProcess(const std::vector<std::string>& command);
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    void signal(int number) const;
    /// Sends SIGKILL and waits for the end.
    void kill();

  private:
    pid_t process_ = -1;
};

}  // namespace orvalo::testing
