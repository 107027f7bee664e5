#include "bench/live/TimedBundle.h"

#include <dlfcn.h>

#include <cstdlib>
#include <stdexcept>

#include "bench/measuring/Stage.h"

namespace orvalo::bench {

RunNanoseconds installTimedEffect(const std::filesystem::path& folder) {
    const auto bundle = folder / "orvalo.lv2";
    const auto library = bundle / "orvalo.so";
    std::filesystem::copy(stage() / "lib/lv2/orvalo.lv2", bundle);
    std::filesystem::rename(library, bundle / effectLibrary);
    std::filesystem::copy(ORVALO_BENCH_TIMED_EFFECT, library);
    // NOLINTNEXTLINE(concurrency-mt-unsafe): this program has no second thread yet.
    setenv("LV2_PATH", (folder.string() + ":/usr/lib/lv2").c_str(), 1);

    // The host will open the same file and so share this library.
    void* loaded = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* symbol = loaded != nullptr ? dlsym(loaded, runNanosecondsSymbol) : nullptr;
    if (symbol == nullptr) {
        throw std::runtime_error("the timed effect does not load");
    }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how dlsym answers.
    return reinterpret_cast<RunNanoseconds>(symbol);
}

}  // namespace orvalo::bench
