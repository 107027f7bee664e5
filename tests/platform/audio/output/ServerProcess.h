#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace orvalo::testing {

/// A program that runs beside the test, its output discarded; ended and awaited with the object.
class ServerProcess {
  public:
    explicit ServerProcess(const std::vector<std::string>& command);
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    void signal(int number) const;
    /// Kills it, which it cannot see coming, and waits for its end.
    void kill();

  private:
    pid_t process_;
};

}  // namespace orvalo::testing
