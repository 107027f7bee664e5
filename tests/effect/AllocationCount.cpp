#include "tests/effect/AllocationCount.h"

#include <cerrno>
#include <cstddef>

namespace {

thread_local bool counting = false;
thread_local int calls = 0;

void note() {
    if (counting) {
        ++calls;
    }
}

}  // namespace

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// The sanitizer replaces the heap functions and offers hooks for each call.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*)(const volatile void*, size_t),
                                                         void (*)(const volatile void*));

namespace {

const int hooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, size_t) { note(); }, [](const volatile void*) { note(); });

}  // namespace

#else

// The program's definitions replace those of the C library, for the plug-in's library, too.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): names of the C library
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* block);
// NOLINTEND(bugprone-reserved-identifier)

void* malloc(size_t size) {
    note();
    return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
    note();
    return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
    note();
    return __libc_realloc(block, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
    note();
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** block, size_t alignment, size_t size) {
    note();
    *block = __libc_memalign(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}

void free(void* block) {
    note();
    __libc_free(block);
}
}

#endif

namespace orvalo::testing {

AllocationCount::AllocationCount() {
    calls = 0;
    counting = true;
}

AllocationCount::~AllocationCount() {
    counting = false;
}

int AllocationCount::count() {
    return calls;
}

}  // namespace orvalo::testing
