#if defined(__SANITIZE_THREAD__)

// The HTTP client and what it stands on lock with calls that the sanitizer does not see, so it
// takes their handing over of memory for races. Our own code is watched as ever.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name for what it asks.
extern "C" const char* __tsan_default_options();
const char* __tsan_default_options() {
    return "ignore_noninstrumented_modules=1";
}

#endif
