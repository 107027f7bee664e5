#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace orvalo::testing {

/// A running program of the stage. Its standard output is read line by line, its standard error is
/// kept. The destructor kills it and waits for its end.
class Program {
  public:
    using Environment = std::map<std::string, std::string>;

    /// environment: in addition to the test's own.
    explicit Program(const std::vector<std::string>& command, const Environment& environment = {});
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// The lines of standard output up to the first that contains the text; all lines when it ends
    /// or prints nothing for a minute.
    std::vector<std::string> readUntil(const std::string& text);
    /// The remaining lines until the program ends.
    std::vector<std::string> readAll() { return readUntil({}); }
    void signal(int number) const;
    /// The process's ID.
    pid_t process() const { return process_; }
    /// Closes the reading end of standard output.
    void closeOutput();
    /// Waits for the end. Returns the exit status, or the negative number of the signal.
    int wait();
    /// The program's standard error so far.
    std::string standardError() const;

  private:
    pid_t process_ = -1;
    int output_ = -1;
    int error_ = -1;
    std::string pending_;
};

}  // namespace orvalo::testing
