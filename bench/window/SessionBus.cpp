#include "bench/window/SessionBus.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace orvalo::bench {

namespace {

constexpr int kMicrosecondsBetweenLooks = 10'000;
constexpr int kLooks = 500;

}  // namespace

SessionBus::SessionBus()
    : address_((folder_.path() / "bus").string()),
      daemon_({"dbus-daemon", "--session", "--nofork", "--nopidfile",
               "--address=unix:path=" + address_}) {
    for (int look = 0; !std::filesystem::exists(address_); ++look) {
        if (look == kLooks) {
            throw std::runtime_error("dbus-daemon does not answer");
        }
        usleep(kMicrosecondsBetweenLooks);
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): made before this program has a second thread.
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + address_).c_str(), 1);
}

}  // namespace orvalo::bench
