#include "tests/foundation/AllocationCount.h"

#include <atomic>
#include <cstddef>

#include "platform/foundation/RealTimeScope.h"

namespace {

std::atomic<std::uint64_t>& counter() {
    static constinit std::atomic<std::uint64_t> count{0};
    return count;
}

void note() {
    if (orvalo::RealTimeScope::isActive()) {
        counter().fetch_add(1, std::memory_order_relaxed);
    }
}

}  // namespace

std::uint64_t orvalo::testing::allocationsInRealTime() {
    return counter().load(std::memory_order_relaxed);
}

// The names are those of the C library and the sanitizers.
// NOLINTBEGIN(*-reserved-identifier,*-declaration-parameter-name)
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// The sanitizers have replaced the allocator and call these.
extern "C" void __sanitizer_malloc_hook(const volatile void* /*memory*/, std::size_t /*size*/) {
    note();
}
extern "C" void __sanitizer_free_hook(const volatile void* /*memory*/) {
    note();
}

#else

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) {
    note();
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    note();
    return __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
    note();
    return __libc_realloc(memory, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    note();
    return __libc_memalign(alignment, size);
}
void free(void* memory) {
    note();
    __libc_free(memory);
}
}

#endif
// NOLINTEND(*-reserved-identifier,*-declaration-parameter-name)
