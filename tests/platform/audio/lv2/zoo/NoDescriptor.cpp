// A library without an LV2 entry point.

extern "C" __attribute__((visibility("default"))) int somethingElse() {
    return 0;
}
