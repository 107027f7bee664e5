#include "platform/foundation/Print.h"

#include <unistd.h>

#include <mutex>

#include "platform/foundation/WriteLine.h"

namespace orvalo {

void print(std::string_view text) {
    // One write alone does not keep lines whole: pipes split long ones.
    static constinit std::mutex mutex;
    const std::lock_guard lock(mutex);
    writeLine(STDOUT_FILENO, {}, text);
}

}  // namespace orvalo
