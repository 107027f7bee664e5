// Effects that halve their input. When the control "trigger" is 0.5 or more, or, for "made-...",
// when they are instantiated, each misbehaves as the end of its URI says.

#include <lv2/core/lv2.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kPrefix = "urn:orvalo:misbehaving:";
constexpr std::size_t kTrigger = 4;

struct Effect {
    std::string how;
    std::array<float*, 5> ports{};
    std::vector<char> leak;
};

// Never reached; atomic, so that the compiler cannot know.
std::atomic<int> lastLevel{-1};

int overflow(int level) {
    if (level == lastLevel) {
        return level;
    }
    std::array<char, 4096> frame{};
    volatile char* const place = frame.data();
    *place = static_cast<char>(level);
    return overflow(level + 1) + *place;
}

void misbehave(Effect& effect, std::string_view how) {
    if (how == "segv") {
        static volatile int* volatile nowhere = nullptr;
        *nowhere = 1;
    } else if (how == "abort") {
        std::abort();
    } else if (how == "exit") {
        std::exit(7);
    } else if (how == "overflow") {
        lastLevel = overflow(0);
    } else if (how == "loop") {
        while (lastLevel.load() < 0) {
        }
    } else if (how == "leak") {
        effect.leak.resize(effect.leak.size() + (std::size_t{300} << 20U), 1);
    }
}

LV2_Handle instantiate(const LV2_Descriptor* descriptor, double /*rate*/, const char* /*bundle*/,
                       const LV2_Feature* const* /*features*/) {
    auto* effect = new Effect{std::string(descriptor->URI).substr(kPrefix.size()), {}, {}};
    constexpr std::string_view kMade = "made-";
    if (effect->how.starts_with(kMade)) {
        misbehave(*effect, effect->how.substr(kMade.size()));
    }
    return effect;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    static_cast<Effect*>(handle)->ports.at(port) = static_cast<float*>(location);
}

void run(LV2_Handle handle, std::uint32_t frames) {
    auto& effect = *static_cast<Effect*>(handle);
    for (std::size_t channel = 0; channel < 2; ++channel) {
        for (std::uint32_t frame = 0; frame < frames; ++frame) {
            effect.ports[2 + channel][frame] = 0.5F * effect.ports[channel][frame];
        }
    }
    if (*effect.ports[kTrigger] >= 0.5F) {
        misbehave(effect, effect.how);
    }
}

void cleanup(LV2_Handle handle) {
    delete static_cast<Effect*>(handle);
}

#define EFFECT(how)                                                                              \
    LV2_Descriptor {                                                                             \
        "urn:orvalo:misbehaving:" how, instantiate, connectPort, nullptr, run, nullptr, cleanup, \
            nullptr                                                                              \
    }

const std::array kEffects{EFFECT("segv"),      EFFECT("abort"),    EFFECT("exit"),
                          EFFECT("overflow"),  EFFECT("loop"),     EFFECT("leak"),
                          EFFECT("made-segv"), EFFECT("made-loop")};

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index < kEffects.size() ? &kEffects[index] : nullptr;
}
