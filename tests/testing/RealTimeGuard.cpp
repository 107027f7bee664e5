// Replaces the C library's calls that a render thread must not make. Inside a RealTimeScope such a
// call ends the program with the call's name and a backtrace. Loaded plug-ins and libraries use the
// replacements too when the program exports its symbols. Under the sanitizers, which replace these
// calls themselves, only allocations and releases are seen.

#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "platform/foundation/RealTimeScope.h"

namespace {

thread_local bool isReporting = false;

void check(const char* call) {
    if (!orvalo::RealTimeScope::isActive() || isReporting) {
        return;
    }
    isReporting = true;
    const char* prefix = "Forbidden on the render thread: ";
    syscall(SYS_write, STDERR_FILENO, prefix, std::strlen(prefix));
    syscall(SYS_write, STDERR_FILENO, call, std::strlen(call));
    syscall(SYS_write, STDERR_FILENO, "\n", 1);
    std::array<void*, 64> frames{};
    const auto count = backtrace(frames.data(), static_cast<int>(frames.size()));
    backtrace_symbols_fd(frames.data(), count, STDERR_FILENO);
    std::abort();
}

}  // namespace

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

// NOLINTBEGIN(bugprone-reserved-identifier): the names of the sanitizers' hooks.
extern "C" void __sanitizer_malloc_hook(const volatile void* /*memory*/, std::size_t /*size*/) {
    check("malloc");
}
extern "C" void __sanitizer_free_hook(const volatile void* /*memory*/) {
    check("free");
}
// NOLINTEND(bugprone-reserved-identifier)

#else

namespace {

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// Defines a call that checks, then calls the C library's function.
#define GUARDED(result, name, parameters, arguments)                           \
    extern "C" __attribute__((visibility("default"))) result name parameters { \
        check(#name);                                                          \
        static auto* const original = next<result parameters>(#name);          \
        return original arguments;                                             \
    }

// The C library's parameters have reserved names.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)

// NOLINTBEGIN(bugprone-reserved-identifier): the C library's allocator under its own names, which
// work before dlsym() does.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) {
    check("malloc");
    return __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size) {
    check("calloc");
    return __libc_calloc(count, size);
}
void* realloc(void* memory, std::size_t size) {
    check("realloc");
    return __libc_realloc(memory, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    check("aligned_alloc");
    return __libc_memalign(alignment, size);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    check("posix_memalign");
    *memory = __libc_memalign(alignment, size);
    return *memory == nullptr ? 12 /* ENOMEM */ : 0;
}
void free(void* memory) {
    check("free");
    __libc_free(memory);
}
}
// NOLINTEND(bugprone-reserved-identifier)

GUARDED(int, pthread_mutex_lock, (pthread_mutex_t * mutex), (mutex))
GUARDED(int, pthread_mutex_trylock, (pthread_mutex_t * mutex), (mutex))
GUARDED(int, pthread_mutex_unlock, (pthread_mutex_t * mutex), (mutex))
GUARDED(int, pthread_rwlock_rdlock, (pthread_rwlock_t * lock), (lock))
GUARDED(int, pthread_rwlock_wrlock, (pthread_rwlock_t * lock), (lock))
GUARDED(int, pthread_spin_lock, (pthread_spinlock_t * lock), (lock))
GUARDED(int, pthread_cond_wait, (pthread_cond_t * condition, pthread_mutex_t* mutex),
        (condition, mutex))
GUARDED(int, pthread_cond_signal, (pthread_cond_t * condition), (condition))
GUARDED(int, pthread_cond_broadcast, (pthread_cond_t * condition), (condition))
GUARDED(ssize_t, write, (int descriptor, const void* data, std::size_t size),
        (descriptor, data, size))
GUARDED(ssize_t, writev, (int descriptor, const iovec* parts, int count),
        (descriptor, parts, count))
GUARDED(ssize_t, read, (int descriptor, void* data, std::size_t size), (descriptor, data, size))
GUARDED(int, close, (int descriptor), (descriptor))
GUARDED(int, poll, (pollfd * descriptors, nfds_t count, int timeout), (descriptors, count, timeout))
GUARDED(int, nanosleep, (const timespec* request, timespec* remaining), (request, remaining))
GUARDED(int, sched_yield, (), ())

extern "C" int open(const char* path, int flags, ...) {
    check("open");
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = va_arg(arguments, mode_t);
    va_end(arguments);
    static auto* const original = next<int(const char*, int, ...)>("open");
    return original(path, flags, mode);
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

#endif
