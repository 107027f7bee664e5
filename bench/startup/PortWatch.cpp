#include "bench/startup/PortWatch.h"

#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <utility>

#include "bench/measuring/Clocks.h"

namespace orvalo::bench {

namespace {

constexpr int kMicrosecondsBetweenLooks = 5000;

}  // namespace

PortWatch::PortWatch()
    : client_(jack_client_open("orvalo-bench-watch", JackNoStartServer, nullptr),
              jack_client_close) {
    if (!client_ || jack_set_port_registration_callback(client_.get(), changed, this) != 0 ||
        jack_activate(client_.get()) != 0) {
        throw std::runtime_error("the JACK server refuses the client");
    }
}

void PortWatch::changed(jack_port_id_t /*port*/, int isRegistered, void* self) {
    const auto now = monotonicNanoseconds();
    auto& watch = *static_cast<PortWatch*>(self);
    const std::lock_guard lock(watch.mutex_);
    if (isRegistered != 0 && !watch.registeredAt_) {
        watch.registeredAt_ = now;
        watch.registered_.notify_all();
    }
}

std::optional<std::int64_t> PortWatch::awaitPort(double seconds) {
    std::unique_lock lock(mutex_);
    registered_.wait_for(lock, std::chrono::duration<double>(seconds),
                         [this] { return registeredAt_.has_value(); });
    return std::exchange(registeredAt_, std::nullopt);
}

void PortWatch::awaitQuiet() {
    while (!isQuiet()) {
        usleep(kMicrosecondsBetweenLooks);
    }
    const std::lock_guard lock(mutex_);
    registeredAt_.reset();
}

bool PortWatch::isQuiet() const {
    // Physical ports belong to the driver.
    const std::unique_ptr<const char*, void (*)(const char**)> ports(
        jack_get_ports(client_.get(), nullptr, nullptr, 0),
        [](const char** list) { jack_free(list); });
    for (const char** port = ports.get(); port != nullptr && *port != nullptr; ++port) {
        const auto flags = jack_port_flags(jack_port_by_name(client_.get(), *port));
        if ((flags & JackPortIsPhysical) == 0) {
            return false;
        }
    }
    return true;
}

}  // namespace orvalo::bench
