#pragma once

#include <string>

namespace orvalo {

/// One line on standard error that is written over and over, when standard error is a terminal;
/// nothing otherwise. The cursor rests at its start, so that a line of anybody's takes its place.
class ProgressLine {
  public:
    ProgressLine();
    /// As hide().
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    bool isShown() const { return isTerminal_; }
    void show(const std::string& text);
    /// Takes the line away.
    void hide();

  private:
    const bool isTerminal_;
    std::string shown_;
};

}  // namespace orvalo
