// The effect's library with a clock around run().

#include "bench/live/timed_effect/TimedEffect.h"

#include <dlfcn.h>
#include <lv2/core/lv2.h>

#include <filesystem>

#include "bench/measuring/Clocks.h"

namespace {

using namespace orvalo::bench;

const LV2_Descriptor* effect = nullptr;
std::int64_t spent = 0;

void run(LV2_Handle instance, std::uint32_t frames) {
    const auto begin = monotonicNanoseconds();
    effect->run(instance, frames);
    spent += monotonicNanoseconds() - begin;
}

/// The first plug-in of the library in the folder that holds this one.
const LV2_Descriptor* loadEffect() {
    Dl_info here{};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how dladdr asks.
    dladdr(reinterpret_cast<const void*>(&run), &here);
    const auto path = std::filesystem::path(here.dli_fname).parent_path() / effectLibrary;
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return nullptr;
    }
    const auto descriptor =
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): how dlsym answers.
        reinterpret_cast<LV2_Descriptor_Function>(dlsym(library, "lv2_descriptor"));
    return descriptor != nullptr ? descriptor(0) : nullptr;
}

}  // namespace

extern "C" {

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static LV2_Descriptor timed;
    if (effect == nullptr) {
        effect = loadEffect();
    }
    if (index != 0 || effect == nullptr) {
        return nullptr;
    }
    timed = *effect;
    timed.run = run;
    return &timed;
}

LV2_SYMBOL_EXPORT std::int64_t orvalo_bench_run_nanoseconds() {
    return spent;
}
}
