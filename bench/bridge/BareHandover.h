#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>

namespace orvalo::bench {

/// Passes a word to another process and back, without work there: the least cost of a hand-over on
/// this machine.
class BareHandover {
  public:
    BareHandover();
    ~BareHandover();
    BareHandover(const BareHandover&) = delete;
    BareHandover& operator=(const BareHandover&) = delete;

    /// One hand-over and the answer.
    void run() noexcept;

  private:
    struct Words {
        alignas(64) std::atomic<std::uint32_t> request;
        alignas(64) std::atomic<std::uint32_t> response;
    };

    [[noreturn]] static void answer(Words& words) noexcept;

    Words* words_;
    pid_t process_;
};

}  // namespace orvalo::bench
