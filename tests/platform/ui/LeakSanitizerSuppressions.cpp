#if defined(__SANITIZE_ADDRESS__)

// The toolkit forgets the rows of a PNG file that breaks off (12,800 bytes for the one here).
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name for what it asks.
extern "C" const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
    return "leak:libgtk-4.so.1\n";
}

#endif
