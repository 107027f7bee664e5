#pragma once

/// Compiles a function a second time, for processors with AVX2, and chooses when the library is
/// loaded. Both give the same bits, because no multiplication is fused with an addition. Not under
/// the sanitizers, whose runtime is not ready when the loader chooses.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define ORVALO_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define ORVALO_VECTOR_CLONES
#endif
