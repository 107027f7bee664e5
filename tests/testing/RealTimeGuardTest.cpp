#include <gtest/gtest.h>
#include <pthread.h>

#include <cstdlib>

#include "platform/foundation/RealTimeScope.h"

namespace orvalo::testing {

namespace {

void allocateWhileRendering() {
    // Volatile, so that the compiler keeps the allocation.
    const volatile std::size_t size = 1;
    const RealTimeScope scope;
    void* volatile memory = std::malloc(size);
    std::free(memory);
}

TEST(RealTimeGuardDeathTest, EndsTheProgramAtAnAllocation) {
    EXPECT_DEATH(allocateWhileRendering(), "Forbidden on the render thread: malloc");
}

// Under the sanitizers the guard does not see locks.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

void lockWhileRendering() {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    const RealTimeScope scope;
    pthread_mutex_lock(&mutex);
}

TEST(RealTimeGuardDeathTest, EndsTheProgramAtALock) {
    EXPECT_DEATH(lockWhileRendering(), "Forbidden on the render thread: pthread_mutex_lock");
}

#endif

}  // namespace

}  // namespace orvalo::testing
