#pragma once

#include <string>

namespace orvalo {

/// A line on standard error that each text replaces, when standard error is a terminal; else
/// nothing. The cursor stays at its start, so that other output overwrites it.
class ProgressLine {
  public:
    ProgressLine();
    /// Erases the line.
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    bool isShown() const { return isTerminal_; }
    void show(const std::string& text);
    /// Erases the line.
    void hide();

  private:
    const bool isTerminal_;
    std::string shown_;
};

}  // namespace orvalo
