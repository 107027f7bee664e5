#include "tests/signal/AllocationTrap.h"

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cstddef>

#include "platform/foundation/RealTimeScope.h"

namespace orvalo::testing {

namespace {

std::atomic<int> count{0};

void note() {
    if (RealTimeScope::isActive()) {
        count.fetch_add(1, std::memory_order_relaxed);
    }
}

template <typename Function>
Function* original(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

int forbiddenCalls() {
    return count.load(std::memory_order_relaxed);
}

}  // namespace orvalo::testing

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the C library's are reserved.
// The C library's own entry points stand behind these: no look-up, which would allocate itself.
extern "C" {

void* __libc_malloc(std::size_t size);                           // NOLINT: given name.
void* __libc_calloc(std::size_t count, std::size_t size);        // NOLINT: given name.
void* __libc_realloc(void* memory, std::size_t size);            // NOLINT: given name.
void* __libc_memalign(std::size_t alignment, std::size_t size);  // NOLINT: given name.
void __libc_free(void* memory);                                  // NOLINT: given name.

void* malloc(std::size_t size) {
    orvalo::testing::note();
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    orvalo::testing::note();
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
    orvalo::testing::note();
    return __libc_realloc(memory, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    orvalo::testing::note();
    *memory = __libc_memalign(alignment, size);
    return *memory == nullptr ? 12 : 0;
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    orvalo::testing::note();
    return __libc_memalign(alignment, size);
}

void free(void* memory) {
    orvalo::testing::note();
    __libc_free(memory);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
    orvalo::testing::note();
    static auto* const lock =
        orvalo::testing::original<int(pthread_mutex_t*)>("pthread_mutex_lock");
    return lock(mutex);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
