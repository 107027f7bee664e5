#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace orvalo {

/// How long the process of an effect may take, how much it may have, and how often it may die. One
/// that goes beyond is ended and started again.
struct BridgeLimits {
    using Milliseconds = std::chrono::milliseconds;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr int kSlowness = 10;  ///< Of programs under a sanitizer.
#else
    static constexpr int kSlowness = 1;
#endif

    /// How much of a quantum's duration the render thread waits for its answer. The rest is for
    /// everything else that the quantum needs.
    double waitFraction = 0.75;
    /// How long offline rendering waits for a quantum. Longer than a hang takes to be noticed.
    Milliseconds offlineWait{5000 * kSlowness};

    /// How often the process is asked whether it lives.
    Milliseconds ping{500};
    /// How long an answer, or a quantum, may take.
    Milliseconds hang{1000 * kSlowness};
    /// How long a request may take that loads an effect or what it needs: samples are large.
    Milliseconds request{10000 * kSlowness};
    /// How long a process that has hung up may take to end by itself, which tells why it did.
    Milliseconds farewell{500 * kSlowness};
    /// How long after a start that failed the next is tried.
    Milliseconds rest{1000};
    /// How long the supervisor sleeps at most.
    Milliseconds tick{100};

    /// Resident memory, in bytes.
    std::uint64_t memory = defaultMemory();
    /// Of a state's text, in bytes; with what else an Instantiate says it stays below what a
    /// message may have.
    std::size_t state = std::size_t{48} << 20U;
    /// Lines a second that the process may write into the log.
    unsigned logLines = 50;

    /// So many deaths within a window of time are the last.
    unsigned deaths = 3;
    std::chrono::seconds window{60};

    /// 2 GiB, at most half of the machine's memory.
    static std::uint64_t defaultMemory();
};

}  // namespace orvalo
