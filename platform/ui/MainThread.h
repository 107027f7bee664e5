#pragma once

#include <string_view>

namespace orvalo {

/// Interface work happens on the main thread only: elsewhere a fatal error that names the
/// operation, such as "UIView.addSubview".
void requireMainThread(std::string_view operation);

}  // namespace orvalo
