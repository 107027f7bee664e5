// Hosts an effect, writes the process ID of its service on standard output, and waits for a signal.

#include <unistd.h>

#include <cstdio>

#include "tests/platform/audio/bridge/host/BridgedEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"

int main() {
    using namespace orvalo::testing;
    const auto unit = makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:segv");
    std::printf("%d\n", static_cast<int>(onlyService()));
    std::fflush(stdout);
    for (;;) {
        pause();
    }
}
