#pragma once

#include <string>
#include <vector>

namespace orvalo::testing {

/// Captures what the process writes to a file descriptor while the object lives. At most one object
/// per descriptor at a time.
class CapturedOutput {
  public:
    explicit CapturedOutput(int descriptor = 1);
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// The text written so far; capturing continues.
    std::string text() const;
    /// text() as lines; text behind the last line feed is a line unless it is empty.
    std::vector<std::string> lines() const;

  private:
    int descriptor_;
    int saved_;
    int file_;
};

}  // namespace orvalo::testing
