#pragma once

#include <filesystem>

namespace orvalo {

/// The absolute path of the running program's file. Constant. Any thread.
const std::filesystem::path& executablePath();

}  // namespace orvalo
