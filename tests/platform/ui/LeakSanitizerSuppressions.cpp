#if defined(__SANITIZE_ADDRESS__)

// The toolkit leaks the rows of a truncated PNG file (12,800 bytes in this test).
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name.
extern "C" const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
    return "leak:libgtk-4.so.1\n";
}

#endif
