#pragma once

#include "programs/defaults/CommandLine.h"

namespace orvalo {

/// Runs the command, or changes nothing when it throws: BadOption for an invalid command line,
/// another std::exception for a failure. The text is one line that names the culprit.
void runDefaultsCommand(const CommandLine& line);

}  // namespace orvalo
