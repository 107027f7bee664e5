#pragma once

#include "platform/foundation/NSObject.h"

namespace orvalo {

/// Stands for one loading of a page. Nothing can be asked of it but whether it is the same.
class WKNavigation : public NSObject {};

}  // namespace orvalo
