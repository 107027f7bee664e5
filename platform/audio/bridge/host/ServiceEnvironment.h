#pragma once

#include <string>
#include <vector>

namespace orvalo {

/// What the process of an effect is told of this one's environment, as "NAME=value": where plug-ins
/// and the user's files are, the display, the language, and how sanitizers and libraries report.
/// Not while another thread changes the environment.
std::vector<std::string> serviceEnvironment();

}  // namespace orvalo
