#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace orvalo::testing {

/// A running program whose output is discarded. The destructor terminates it, kills it if it does
/// not end within ten seconds, and waits for its end.
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

/// Whether a server accepts connections to this Unix socket. The socket's file is there before: a
/// server that has bound it and does not listen yet refuses connections.
bool isListening(const std::filesystem::path& socket);

}  // namespace orvalo::testing
