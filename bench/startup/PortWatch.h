#pragma once

#include <jack/jack.h>

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace orvalo::bench {

/// A JACK client that hears when others register ports.
class PortWatch {
  public:
    /// Throws std::runtime_error when the server lets no client in.
    PortWatch();

    /// When the first port since the last call was registered, by monotonicNanoseconds(); nothing
    /// when none was within so many seconds from now.
    std::optional<std::int64_t> awaitPort(double seconds);

    /// Waits until no client but this one and the server's driver has ports, and forgets what was
    /// registered.
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
