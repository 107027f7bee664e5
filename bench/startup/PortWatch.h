#pragma once

#include <jack/jack.h>

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace orvalo::bench {

/// A JACK client that sees when other clients register ports.
class PortWatch {
  public:
    /// Throws std::runtime_error when the server refuses the client.
    PortWatch();

    /// Blocks until a port is registered. Returns the time of the first one since the last call, by
    /// monotonicNanoseconds(); nothing after a timeout in seconds.
    std::optional<std::int64_t> awaitPort(double seconds);

    /// Blocks until only this client and the driver have ports, and discards earlier
    /// registrations.
    void awaitQuiet();

  private:
    static void changed(jack_port_id_t port, int isRegistered, void* self);
    bool isQuiet() const;

    std::mutex mutex_;
    std::condition_variable registered_;
    std::optional<std::int64_t> registeredAt_;
    std::unique_ptr<jack_client_t, int (*)(jack_client_t*)> client_;
};

}  // namespace orvalo::bench
