#pragma once

#include <string_view>

namespace orvalo {

/// One line on standard error that is written over and over, when standard error is a terminal;
/// nothing otherwise. The line is finished when the object goes.
class ProgressLine {
  public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    bool isShown() const { return isTerminal_; }
    void show(std::string_view text);

  private:
    const bool isTerminal_;
    bool hasText_ = false;
};

}  // namespace orvalo
