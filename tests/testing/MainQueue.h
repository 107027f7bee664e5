#pragma once

#include <string>

#include "tests/testing/CapturedOutput.h"
#include "tests/testing/Lines.h"

namespace orvalo::testing {

/// Runs the items that the main queue holds at the call.
void drainMainQueue();

/// Serves the main queue until standard output has that line; fails the test after a minute.
void serveMainQueueUntilPrinted(const CapturedOutput& output, const std::string& line);

}  // namespace orvalo::testing
