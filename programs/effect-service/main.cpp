#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <cstdlib>

#include "programs/effect-service/EffectService.h"
#include "programs/effect-service/PlainLog.h"
#include "programs/effect-service/ServiceLimits.h"

namespace {

constexpr int kSocket = 3;

}  // namespace

/// One effect, for the program that started this one: effect-service HOST, where HOST is that
/// program's process number, and its socket is descriptor 3.
int main(int argc, char** argv) {
    using namespace orvalo;
    usePlainLog();
    const long host = argc == 2 ? std::strtol(argv[1], nullptr, 10) : 0;
    if (host <= 0) {
        g_warning("effect-service is started by the programs that need it, not by hand.");
        return 2;
    }
    if (!bindToHost(static_cast<pid_t>(host))) {
        return 0;
    }
    applyServiceLimits();
    // Not for what the effect starts.
    fcntl(kSocket, F_SETFD, FD_CLOEXEC);
    EffectService service{FileDescriptor(kSocket)};
    // At once: what the effect's threads use must not be torn down around them.
    _exit(service.run());
}
