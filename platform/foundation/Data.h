#pragma once

#include <cstdint>
#include <vector>

namespace orvalo {

using Data = std::vector<std::uint8_t>;

}  // namespace orvalo
