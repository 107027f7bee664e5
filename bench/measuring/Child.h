#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvalo::bench {

using Command = std::vector<std::string>;
/// Environment variables that are added to, or replace, those of this process.
using Environment = std::map<std::string, std::string>;

/// A child process. Its standard error is discarded; its standard input is open and empty. It ends
/// with the object or with this process.
class Child {
  public:
    enum class Output { discarded, read };

    /// Throws std::system_error when fork() fails. A program that does not exist exits with status
    /// 127.
    explicit Child(const Command& command, const Environment& environment = {},
                   Output output = Output::discarded);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Start time, in monotonicNanoseconds().
    std::int64_t beganAt() const { return beganAt_; }
    pid_t process() const { return process_; }

    /// Reads the output up to the given line and returns its arrival time in
    /// monotonicNanoseconds(). Absent if the line does not arrive within `seconds` of the start.
    /// For Output::read.
    std::optional<std::int64_t> awaitLine(const std::string& line, double seconds) const;

    /// Waits for its end. Throws std::runtime_error when it failed.
    void awaitSuccess();
    /// The same; returns the user and system time of it and of all that it started, in seconds. No
    /// other child may be started during the call. Throws std::system_error where the kernel's
    /// counters cannot be used.
    double awaitProcessorSeconds();

    /// Sends SIGTERM, later SIGKILL, and waits for its end.
    void end();

  private:
    std::string name_;
    std::int64_t beganAt_ = 0;
    pid_t process_ = -1;
    int input_ = -1;   ///< The writing end of its standard input.
    int output_ = -1;  ///< The reading end of its standard output.
    int clock_ = -1;   ///< A counter of the kernel's; below 0 for none.
};

}  // namespace orvalo::bench
