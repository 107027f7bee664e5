// A library that is none of LV2's.

extern "C" __attribute__((visibility("default"))) int somethingElse() {
    return 0;
}
