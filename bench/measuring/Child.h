#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvalo::bench {

using Command = std::vector<std::string>;
/// Variables that a child has besides, or instead of, those of this process.
using Environment = std::map<std::string, std::string>;

/// A program that this one runs, its errors discarded, its input open but empty. It ends with the
/// object, or with this process.
class Child {
  public:
    enum class Output { discarded, read };

    /// Throws std::system_error when there can be no child. A program that does not exist ends with
    /// status 127.
    explicit Child(const Command& command, const Environment& environment = {},
                   Output output = Output::discarded);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// When the child was begun, by monotonicNanoseconds().
    std::int64_t beganAt() const { return beganAt_; }
    pid_t process() const { return process_; }

    /// Reads its output until a line is the given one, and returns when it came by
    /// monotonicNanoseconds(); nothing when it did not come within so many seconds, or at all. For
    /// Output::read.
    std::optional<std::int64_t> awaitLine(const std::string& line, double seconds) const;

    /// Waits for its end and returns the processor's time that it and its children used, for the
    /// program and for the system, in seconds. Throws std::runtime_error when it failed.
    double awaitProcessorSeconds();

    /// Asks it to end and waits until it has, killing it in the end.
    void end();

  private:
    std::string name_;
    std::int64_t beganAt_ = 0;
    pid_t process_ = -1;
    int input_ = -1;   ///< The writing end of its standard input.
    int output_ = -1;  ///< The reading end of its standard output.
};

}  // namespace orvalo::bench
