#pragma once

#include <optional>
#include <string>

namespace orvalo {

/// A text that no other call gives, on any machine: the process information's globally unique
/// string, behind the prefix and a hyphen when there is a prefix, an empty one included. Any
/// thread.
std::string uniqueName(const std::optional<std::string>& withPrefix = std::nullopt);

}  // namespace orvalo
