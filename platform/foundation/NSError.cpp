#include "platform/foundation/NSError.h"

#include <glib.h>

#include <utility>

namespace orvalo {

NSError::NSError(std::string domain, std::int64_t code, std::string localizedDescription)
    : domain_(std::move(domain)),
      code_(code),
      localizedDescription_(std::move(localizedDescription)) {}

NSError NSError::posix(int code, const std::string& culprit) {
    return {"NSPOSIXErrorDomain", code, culprit + ": " + g_strerror(code)};
}

std::string NSError::description() const {
    return "Error Domain=" + domain_ + " Code=" + std::to_string(code_) + " \"" +
           localizedDescription_ + "\"";
}

}  // namespace orvalo
