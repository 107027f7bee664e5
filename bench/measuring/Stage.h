#pragma once

#include <filesystem>
#include <string>

namespace orvalo::bench {

/// The stage of the build, whose programs are measured.
std::filesystem::path stage();

/// The path of orvalo-play. Throws std::runtime_error when it is not built.
std::filesystem::path playProgram();

/// A value for LV2_PATH: the stage's effects, then those of LV2_PATH, or the system's without it.
std::string lv2Path();

}  // namespace orvalo::bench
