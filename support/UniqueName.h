#pragma once

#include <optional>
#include <string>

namespace orvalo {

/// ProcessInfo's globally unique string, after "<prefix>-" when there is a prefix, even an empty
/// one. Any thread.
std::string uniqueName(const std::optional<std::string>& withPrefix = std::nullopt);

}  // namespace orvalo
