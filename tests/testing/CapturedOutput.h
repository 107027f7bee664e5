#pragma once

#include <string>
#include <vector>

namespace orvalo::testing {

/// Catches what the process writes to one file descriptor, from construction until text() or the
/// end of its life. One object for a descriptor at a time.
class CapturedOutput {
  public:
    explicit CapturedOutput(int descriptor = 1);
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    /// What has been written so far; catching goes on.
    std::string text() const;
    /// The same, cut at line feeds; what follows the last one is a line if it is not empty.
    std::vector<std::string> lines() const;

  private:
    int descriptor_;
    int saved_;
    int file_;
};

}  // namespace orvalo::testing
