#pragma once

#include <cstdint>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace orvalo::effect {

/// Makes the thread's floating-point unit take denormal numbers for zero, for the scope's life:
/// dying tails would cost a hundred times as much otherwise. Hosts differ in doing it for us.
class ScopedFlushToZero {
  public:
#if defined(__SSE__)
    ScopedFlushToZero() : saved_(_mm_getcsr()) {
        _mm_setcsr(saved_ | 0x8040U);
    }
    ~ScopedFlushToZero() {
        _mm_setcsr(saved_);
    }
#elif defined(__aarch64__)
    ScopedFlushToZero() {
        asm volatile("mrs %0, fpcr" : "=r"(saved_));
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
