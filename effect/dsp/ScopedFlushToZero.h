#pragma once

#include <cstdint>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace orvalo::effect {

/// Makes the thread's floating-point unit treat denormal numbers as zero while the object lives.
/// Denormals in decaying tails would cost a hundred times as much; not every host sets this.
class ScopedFlushToZero {
  public:
#if defined(__SSE__)
    ScopedFlushToZero() : saved_(_mm_getcsr()) {
        // Flush to zero, and denormals are zero.
        _mm_setcsr(saved_ | 0x8040U);
    }
    ~ScopedFlushToZero() {
        _mm_setcsr(saved_);
    }
#elif defined(__aarch64__)
    ScopedFlushToZero() {
        asm volatile("mrs %0, fpcr" : "=r"(saved_));
        // Flush to zero.
        asm volatile("msr fpcr, %0" : : "r"(saved_ | (1ULL << 24)));
    }
    ~ScopedFlushToZero() {
        asm volatile("msr fpcr, %0" : : "r"(saved_));
    }
#else
    ScopedFlushToZero() {}
    ~ScopedFlushToZero() {}
#endif
    ScopedFlushToZero(const ScopedFlushToZero&) = delete;
    ScopedFlushToZero& operator=(const ScopedFlushToZero&) = delete;

  private:
#if defined(__SSE__)
    unsigned saved_;
#elif defined(__aarch64__)
    std::uint64_t saved_ = 0;
#endif
};

}  // namespace orvalo::effect
