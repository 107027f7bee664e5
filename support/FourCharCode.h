#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// The text of a four-character code such as a component's type: its bytes, most significant first,
/// in the Mac OS Roman character set; "FAIL" when the system cannot decode that. Any thread.
std::string stringValue(std::uint32_t code);

}  // namespace orvalo
