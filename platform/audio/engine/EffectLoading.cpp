#include "platform/audio/engine/EffectLoading.h"

#include <glib.h>

#include <optional>
#include <string_view>
#include <utility>

namespace orvalo {

namespace {

constexpr auto kDefault = EffectLoading::outOfProcess;
constexpr const char* kVariable = "ORVALO_EFFECT_LOADING";

std::optional<EffectLoading>& overridden() {
    static std::optional<EffectLoading> loading;
    return loading;
}

ExpectedRendering& expected() {
    static ExpectedRendering rendering;
    return rendering;
}

EffectMemory& memory() {
    // Never destroyed: an effect may be instantiated while the process ends.
    static auto& memory = *new EffectMemory;
    return memory;
}

EffectLoading read(const char* setting) {
    const std::string_view text(setting == nullptr ? "" : setting);
    if (text == "in-process") {
        return EffectLoading::inProcess;
    }
    if (text == "out-of-process") {
        return EffectLoading::outOfProcess;
    }
    if (!text.empty()) {
        g_warning("%s must be 'in-process' or 'out-of-process', not '%s'; it is ignored.",
                  kVariable, setting);
    }
    return kDefault;
}

}  // namespace

EffectLoading platformEffectLoading() {
    if (const auto chosen = overridden()) {
        return *chosen;
    }
    return read(g_getenv(kVariable));
}

void setPlatformEffectLoading(EffectLoading loading) {
    overridden() = loading;
}

void setEffectMemory(EffectMemory newMemory) {
    memory() = std::move(newMemory);
}

const EffectMemory& effectMemory() {
    return memory();
}

ExpectedRendering expectedRendering() {
    return expected();
}

void setExpectedRendering(const ExpectedRendering& rendering) {
    expected() = rendering;
}

}  // namespace orvalo
