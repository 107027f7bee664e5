#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace orvalo::testing {

/// A program of the stage at work: its standard output read line by line, its standard error kept.
/// Killed and awaited with the object.
class Program {
  public:
    using Environment = std::map<std::string, std::string>;

    /// environment: in addition to the test's own.
    explicit Program(const std::vector<std::string>& command, const Environment& environment = {});
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// The lines of standard output up to the first that holds the text, or all until the end or a
    /// minute without a line.
    std::vector<std::string> readUntil(const std::string& text);
    /// The rest of the lines, until the program ends.
    std::vector<std::string> readAll() { return readUntil({}); }
    void signal(int number) const;
    /// Closes the reading end of standard output.
    void closeOutput();
    /// Waits for the end; the exit status, or minus the signal's number.
    int wait();
    /// What it wrote to standard error so far.
    std::string standardError() const;

  private:
    pid_t process_ = -1;
    int output_ = -1;
    int error_ = -1;
    std::string pending_;
};

}  // namespace orvalo::testing
