#include "bench/measuring/Stage.h"

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
    return (stage() / "lib/lv2").string() + ":/usr/lib/lv2";
}

}  // namespace orvalo::bench
