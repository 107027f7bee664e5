#include "bench/measuring/Stage.h"

#include <cstdlib>
#include <stdexcept>

namespace orvalo::bench {

std::filesystem::path stage() {
    return ORVALO_BENCH_STAGE;
}

std::filesystem::path playProgram() {
    auto program = stage() / "bin/orvalo-play";
    if (!std::filesystem::exists(program)) {
        throw std::runtime_error(program.string() + " is not built");
    }
    return program;
}

std::string lv2Path() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is only one thread.
    const char* path = std::getenv("LV2_PATH");
    return (stage() / "lib/lv2").string() + ":" + (path == nullptr ? "/usr/lib/lv2" : path);
}

}  // namespace orvalo::bench
