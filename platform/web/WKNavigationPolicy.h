#pragma once

namespace orvalo {

/// What is to become of a navigation action.
enum class WKNavigationActionPolicy { cancel = 0, allow = 1 };

/// What is to become of an answer that has arrived.
enum class WKNavigationResponsePolicy { cancel = 0, allow = 1 };

}  // namespace orvalo
