#include "tests/lv2/RealTimeGuard.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <string_view>

#include "platform/foundation/RealTimeScope.h"

namespace {

std::atomic<bool>& isGuarding() {
    static constinit std::atomic<bool> value{false};
    return value;
}

void refuse() {
    if (!isGuarding().load(std::memory_order_relaxed) || !orvalo::RealTimeScope::isActive()) {
        return;
    }
    isGuarding() = false;
    std::array<void*, 64> frames{};
    const int count = backtrace(frames.data(), static_cast<int>(frames.size()));
    constexpr std::string_view message = "Forbidden on the render thread:\n";
    syscall(SYS_write, STDERR_FILENO, message.data(), message.size());
    backtrace_symbols_fd(frames.data(), count, STDERR_FILENO);
    std::abort();
}

}  // namespace

namespace orvalo::testing {

RealTimeGuard::RealTimeGuard() {
    isGuarding() = true;
}
RealTimeGuard::~RealTimeGuard() {
    isGuarding() = false;
}

}  // namespace orvalo::testing

// NOLINTBEGIN(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name):
// the names are those of the C library and the sanitizers.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

extern "C" void __sanitizer_malloc_hook(const volatile void* /*memory*/, std::size_t /*size*/) {
    refuse();
}
extern "C" void __sanitizer_free_hook(const volatile void* /*memory*/) {
    refuse();
}

#else

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) {
    refuse();
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    refuse();
    return __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
    refuse();
    return __libc_realloc(memory, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    refuse();
    return __libc_memalign(alignment, size);
}
void free(void* memory) {
    refuse();
    __libc_free(memory);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
    static const auto next =
        reinterpret_cast<int (*)(pthread_mutex_t*)>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    refuse();
    return next(mutex);
}

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
    refuse();
    return syscall(SYS_write, descriptor, bytes, size);
}
}

#endif
// NOLINTEND(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name)
