#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace orvalo {

/// The limits of an effect service. A service that exceeds a time or memory limit is killed and
/// restarted.
struct BridgeLimits {
    using Milliseconds = std::chrono::milliseconds;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr int kSlowness = 10;  ///< How much slower programs run under a sanitizer.
#else
    static constexpr int kSlowness = 1;
#endif

    /// The part of a quantum's duration for which the render thread waits for the service.
    double waitFraction = 0.75;
    /// How long offline rendering waits for each span of a quantum: longer than `hang`.
    Milliseconds offlineWait{5000 * kSlowness};

    /// The interval between pings, and between looks at memory, threads and cache.
    Milliseconds ping{500};
    /// The time limit for a quantum, which the service's audio thread answers.
    Milliseconds hang{1000 * kSlowness};
    /// The time limit for an answer of the service's main thread, which may load samples or code.
    Milliseconds request{10000 * kSlowness};
    /// The same while that thread runs a UI, which may compile shaders.
    Milliseconds pluginUI{30000 * kSlowness};
    /// How long the start of playback waits for a new sample rate before it goes on dry.
    Milliseconds prepare{750};
    /// How long a service that closed its connection may take to end, so that its exit status
    /// can be logged.
    Milliseconds farewell{500 * kSlowness};
    /// The pause before the next attempt when a service could not be started.
    Milliseconds retryDelay{1000};
    /// The longest time that the supervisor waits for events.
    Milliseconds tick{100};

    /// Resident memory of the service and its children, in bytes.
    std::uint64_t memory = defaultMemory();
    /// The files that the effect keeps in its cache, in bytes.
    std::uint64_t cache = std::uint64_t{256} << 20U;
    /// Threads of the service and its children. Of an ordinary user the kernel allows no more.
    unsigned threads = 512;
    /// The size of a state, in bytes. Leaves room for the rest of an Instantiate message.
    std::size_t state = std::size_t{48} << 20U;
    /// Lines per second that a service may write into the log.
    unsigned logLines = 50;

    /// After this many deaths within the window the service is not restarted.
    unsigned deaths = 3;
    std::chrono::seconds window{60};

    /// 2 GiB, at most half of the machine's memory.
    static std::uint64_t defaultMemory();
};

/// For log lines: "1 s", "300 ms".
std::string durationText(std::chrono::milliseconds duration);

}  // namespace orvalo
