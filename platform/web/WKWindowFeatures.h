#pragma once

#include "platform/foundation/NSObject.h"

namespace orvalo {

/// The wishes of a page for a new window, none of which is offered.
class WKWindowFeatures : public NSObject {};

}  // namespace orvalo
