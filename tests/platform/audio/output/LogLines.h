#pragma once

#include <string>
#include <vector>

#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {

/// The messages that stand on standard error since its making, without GLib's prefixes and empty
/// lines; nothing else is filtered.
class LogLines {
  public:
    LogLines() : captured_(2) {}
    std::vector<std::string> messages() const;

  private:
    CapturedOutput captured_;
};

}  // namespace orvalo::testing
