#include "platform/foundation/FatalError.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "platform/foundation/Print.h"

namespace orvalo {

void fatalError(std::string_view message) {
    // The flush must not end the program by another signal than SIGABRT.
    std::signal(SIGPIPE, SIG_IGN);
    std::fflush(stdout);
    finishPrinting();
    writeLine(STDERR_FILENO, "Fatal error: ", message);
    std::abort();
}

}  // namespace orvalo
