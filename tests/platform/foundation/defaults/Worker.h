#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace orvalo::testing {

/// Another process that uses settings: the program defaults_worker, told what to do line by line.
/// Killed with the object.
class Worker {
  public:
    /// arguments: see Worker's program.
    explicit Worker(const std::vector<std::string>& arguments);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Says a line and returns the line that answers it; empty from one that has ended.
    std::string ask(const std::string& line);
    void say(const std::string& line) const;
    /// The next line of its output; empty when there is none any more.
    std::string readLine();
    void signal(int number) const;
    /// Waits until the process is stopped; false when it ended instead.
    bool waitForStop() const;
    /// Waits for the end; the exit status, or minus the signal's number.
    int wait();
    pid_t process() const { return process_; }

  private:
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string pending_;
};

}  // namespace orvalo::testing
