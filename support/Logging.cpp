#include "support/Logging.h"

#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/Print.h"

namespace orvalo {

void debugprint(std::string text) {
    DispatchQueue::main()->async([text = std::move(text)] { print(text); });
}

void safeprint(std::string text) {
    DispatchQueue::main()->async([text = std::move(text)] { print(text); });
}

}  // namespace orvalo
