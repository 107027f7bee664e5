// Hosts an effect, writes the number of its process on standard output, and waits to be ended.

#include <unistd.h>

#include <cstdio>

#include "tests/platform/audio/bridge/host/BridgedEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"

int main() {
    using namespace orvalo::testing;
    const auto unit = makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:segv");
    std::printf("%d\n", static_cast<int>(*children().begin()));
    std::fflush(stdout);
    for (;;) {
        pause();
    }
}
