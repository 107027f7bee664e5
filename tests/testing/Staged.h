#pragma once

#include <string>

namespace orvalo::testing {

/// The path of a program in the stage.
inline std::string staged(const std::string& program) {
    return std::string(ORVALO_STAGE) + "/bin/" + program;
}

}  // namespace orvalo::testing
