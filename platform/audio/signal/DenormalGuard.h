#pragma once

#include <cstdint>

#if defined(__x86_64__) || defined(__i386__)
#include <xmmintrin.h>
#endif

namespace orvalo {

/// While it lives, the calling thread treats denormal operands and results as zero. Arithmetic on
/// denormals, which fill decaying tails, takes up to a hundred times longer. Does nothing on
/// processors without such a mode.
class DenormalGuard {
  public:
    DenormalGuard() noexcept : saved_(controlWord()) { setControlWord(saved_ | kFlushToZero); }
    ~DenormalGuard() { setControlWord(saved_); }
    DenormalGuard(const DenormalGuard&) = delete;
    DenormalGuard& operator=(const DenormalGuard&) = delete;

  private:
#if defined(__x86_64__) || defined(__i386__)
    using ControlWord = unsigned int;
    /// MXCSR: bit 15 flushes results to zero, bit 6 reads operands as zero.
    static constexpr ControlWord kFlushToZero = 0x8040;
    static ControlWord controlWord() noexcept {
        return _mm_getcsr();
    }
    static void setControlWord(ControlWord word) noexcept {
        _mm_setcsr(word);
    }
#elif defined(__aarch64__)
    using ControlWord = std::uint64_t;
    /// FPCR: bit 24 does both.
    static constexpr ControlWord kFlushToZero = 1U << 24U;
    static ControlWord controlWord() noexcept {
        ControlWord word = 0;
        asm volatile("mrs %0, fpcr" : "=r"(word));
        return word;
    }
    static void setControlWord(ControlWord word) noexcept {
        asm volatile("msr fpcr, %0" : : "r"(word));
    }
#else
    using ControlWord = unsigned int;
    static constexpr ControlWord kFlushToZero = 0;
    static ControlWord controlWord() noexcept {
        return 0;
    }
    static void setControlWord(ControlWord) noexcept {}
#endif

    ControlWord saved_;
};

}  // namespace orvalo
