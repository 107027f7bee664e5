#pragma once

#include <filesystem>
#include <string>

namespace orvalo::bench {

/// The build's staged tree, whose programs are measured.
std::filesystem::path stage();

/// orvalo-play. Throws std::runtime_error when it is not built.
std::filesystem::path playProgram();

/// The stage's effects and the system's, as LV2_PATH has them.
std::string lv2Path();

}  // namespace orvalo::bench
