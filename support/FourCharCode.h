#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// The text of a four-character code such as a component's type: its bytes, most significant first,
/// as Mac OS Roman. "FAIL" when the system lacks that character set. Any thread.
std::string stringValue(std::uint32_t code);

}  // namespace orvalo
