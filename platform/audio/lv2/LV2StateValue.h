#pragma once

#include <cstdint>
#include <optional>

namespace orvalo {

/// A control value out of a state: a float, double, int, long or bool atom's body. Nothing for
/// another type, a size that is not the type's, and what is no finite number.
std::optional<float> numberOf(const void* value, std::uint32_t size, std::uint32_t type);

}  // namespace orvalo
