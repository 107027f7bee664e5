#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace orvalo::testing {

/// The program defaults_worker, another process that uses settings and takes commands line by line.
/// The destructor kills it.
class Worker {
  public:
    /// arguments: see WorkerMain.cpp.
    explicit Worker(const std::vector<std::string>& arguments);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Sends a command and returns the answer; empty when the process has ended.
    std::string ask(const std::string& line);
    void say(const std::string& line) const;
    /// Waits for the next line of output; empty when the process has ended.
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
