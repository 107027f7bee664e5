#pragma once

#include <string>
#include <vector>

#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {

/// The lines on standard error since construction, without GLib's prefixes and without empty lines.
class LogLines {
  public:
    LogLines() : captured_(2) {}
    std::vector<std::string> messages() const;

  private:
    CapturedOutput captured_;
};

}  // namespace orvalo::testing
