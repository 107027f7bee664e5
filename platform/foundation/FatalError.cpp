#include "platform/foundation/FatalError.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/foundation/PipeSignalGuard.h"
#include "platform/foundation/WriteLine.h"

namespace orvalo {

void fatalError(std::string_view message) {
    {
        const PipeSignalGuard guard;
        std::fflush(stdout);
    }
    writeLine(STDERR_FILENO, "Fatal error: ", message);
    std::abort();
}

}  // namespace orvalo
