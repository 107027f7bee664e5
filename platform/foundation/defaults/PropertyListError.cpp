#include "platform/foundation/defaults/PropertyListError.h"

namespace orvalo {

namespace {

// NSPropertyListReadCorruptError of the domain.
constexpr std::int64_t kCode = 3840;

}  // namespace

NSError propertyListError(const std::string& trouble) {
    return {"NSCocoaErrorDomain", kCode, trouble};
}

}  // namespace orvalo
