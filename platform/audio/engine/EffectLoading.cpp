#include "platform/audio/engine/EffectLoading.h"

#include <glib.h>

#include <atomic>
#include <optional>
#include <string_view>

namespace orvalo {

namespace {

constexpr auto kByItself = EffectLoading::outOfProcess;
constexpr const char* kSetting = "ORVALO_EFFECT_LOADING";

std::atomic<std::optional<EffectLoading>>& ofProgram() {
    static std::atomic<std::optional<EffectLoading>> loading;
    return loading;
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
        g_warning("%s is 'in-process' or 'out-of-process', not '%s'.", kSetting, setting);
    }
    return kByItself;
}

}  // namespace

EffectLoading platformEffectLoading() {
    if (const auto chosen = ofProgram().load()) {
        return *chosen;
    }
    return read(g_getenv(kSetting));
}

void setPlatformEffectLoading(EffectLoading loading) {
    ofProgram().store(loading);
}

}  // namespace orvalo
