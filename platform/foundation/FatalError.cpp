#include "platform/foundation/FatalError.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/foundation/Print.h"

namespace orvalo {

void fatalError(std::string_view message) {
    // The flush must not end the program by another signal than SIGABRT.
    std::signal(SIGPIPE, SIG_IGN);
    std::fflush(stdout);
    printToStandardError("Fatal error: " + std::string(message));
    finishPrinting();
    std::abort();
}

}  // namespace orvalo
