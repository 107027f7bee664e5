#pragma once

#include <string_view>

namespace orvalo {

/// A fatal error that names the operation, such as "UIView.addSubview", on any thread but the main
/// thread.
void requireMainThread(std::string_view operation);

}  // namespace orvalo
