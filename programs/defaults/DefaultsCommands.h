#pragma once

#include "programs/defaults/CommandLine.h"

namespace orvalo {

/// Runs the command. Throws BadOption for a command line that makes no sense, another
/// std::exception when the command fails; it changes nothing then. The text is one line that names
/// the culprit.
void runDefaultsCommand(const CommandLine& line);

}  // namespace orvalo
