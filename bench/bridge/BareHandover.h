#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>

namespace orvalo::bench {

/// What this machine takes to hand a word to another process and get it back, with nothing done
/// there: no effect outside can be quicker.
class BareHandover {
  public:
    BareHandover();
    ~BareHandover();
    BareHandover(const BareHandover&) = delete;
    BareHandover& operator=(const BareHandover&) = delete;

    /// There and back.
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
