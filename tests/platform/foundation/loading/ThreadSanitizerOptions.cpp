#if defined(__SANITIZE_THREAD__)

// libsoup and its libraries are not instrumented: the sanitizer does not see their locks and
// reports false races. It still checks our code.

// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name.
extern "C" const char* __tsan_default_options();
const char* __tsan_default_options() {
    return "ignore_noninstrumented_modules=1";
}

#endif
