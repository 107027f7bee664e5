#pragma once

#include <string>

#include "platform/foundation/NSError.h"

namespace orvalo {

/// What is wrong with a property list, such as "it is nested too deeply", as NSError.
NSError propertyListError(const std::string& trouble);

}  // namespace orvalo
