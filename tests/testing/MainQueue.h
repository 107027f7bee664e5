#pragma once

#include <functional>
#include <string>

#include "tests/testing/CapturedOutput.h"
#include "tests/testing/Lines.h"

namespace orvalo::testing {

/// Serves the main queue until the condition holds; a minute without that fails the test.
void serveMainQueueUntil(const std::function<bool()>& condition);

/// Serves what the main queue holds now.
void drainMainQueue();

/// Serves the main queue until standard output has had that line.
void serveMainQueueUntilPrinted(const CapturedOutput& output, const std::string& line);

}  // namespace orvalo::testing
