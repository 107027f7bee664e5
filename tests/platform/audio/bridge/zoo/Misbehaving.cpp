// Effects that halve their input. When the control "trigger" is 0.5 or more, or, for "made-...",
// when they are instantiated, each misbehaves as the end of its URI says. "remade-..." misbehaves
// when it is instantiated for 44.1 kHz. "large" only has a state of 47 MiB, and writes a line when
// it gets it back.

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kPrefix = "urn:orvalo:misbehaving:";
constexpr std::size_t kTrigger = 4;
constexpr std::size_t kLargeState = std::size_t{47} << 20U;

struct Effect {
    std::string how;
    std::array<float*, 5> ports{};
    std::vector<char> leak;
    LV2_URID_Map* map = nullptr;

    LV2_URID number(const char* uri) const { return map->map(map->handle, uri); }
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

LV2_Handle instantiate(const LV2_Descriptor* descriptor, double rate, const char* /*bundle*/,
                       const LV2_Feature* const* features) {
    auto* effect = new Effect{std::string(descriptor->URI).substr(kPrefix.size()), {}, {}};
    for (; *features != nullptr; ++features) {
        if (std::string_view((*features)->URI) == LV2_URID__map) {
            effect->map = static_cast<LV2_URID_Map*>((*features)->data);
        }
    }
    constexpr std::string_view kMade = "made-";
    constexpr std::string_view kRemade = "remade-";
    if (effect->how.starts_with(kMade)) {
        misbehave(*effect, effect->how.substr(kMade.size()));
    } else if (effect->how.starts_with(kRemade) && rate == 44100.0) {
        misbehave(*effect, effect->how.substr(kRemade.size()));
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

std::vector<unsigned char> largeState() {
    std::vector<unsigned char> state(kLargeState);
    constexpr std::size_t kPage = 4096;
    for (std::size_t at = 0; at < state.size(); at += kPage) {
        std::memcpy(&state[at], &at, sizeof(at));
    }
    return state;
}

LV2_State_Status saveLarge(LV2_Handle handle, LV2_State_Store_Function store,
                           LV2_State_Handle place, std::uint32_t /*flags*/,
                           const LV2_Feature* const* /*features*/) {
    static const auto state = largeState();
    const auto& effect = *static_cast<Effect*>(handle);
    return store(place, effect.number("urn:orvalo:misbehaving:large#state"), state.data(),
                 state.size(), effect.number(LV2_ATOM__Chunk),
                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status restoreLarge(LV2_Handle handle, LV2_State_Retrieve_Function retrieve,
                              LV2_State_Handle place, std::uint32_t /*flags*/,
                              const LV2_Feature* const* /*features*/) {
    const auto& effect = *static_cast<Effect*>(handle);
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const auto* state = static_cast<const unsigned char*>(
        retrieve(place, effect.number("urn:orvalo:misbehaving:large#state"), &size, &type, &flags));
    const auto expected = largeState();
    if (state != nullptr && size == expected.size() &&
        std::memcmp(state, expected.data(), size) == 0) {
        std::fputs("The large state is back.\n", stderr);
    }
    return LV2_STATE_SUCCESS;
}

const void* extensionOfLarge(const char* uri) {
    static const LV2_State_Interface state{saveLarge, restoreLarge};
    return std::string_view(uri) == LV2_STATE__interface ? &state : nullptr;
}

#define EFFECT(how)                                                                              \
    LV2_Descriptor {                                                                             \
        "urn:orvalo:misbehaving:" how, instantiate, connectPort, nullptr, run, nullptr, cleanup, \
            nullptr                                                                              \
    }

const std::array kEffects{EFFECT("segv"),
                          EFFECT("abort"),
                          EFFECT("exit"),
                          EFFECT("overflow"),
                          EFFECT("loop"),
                          EFFECT("leak"),
                          EFFECT("made-segv"),
                          EFFECT("made-loop"),
                          EFFECT("remade-loop"),
                          LV2_Descriptor{"urn:orvalo:misbehaving:large", instantiate, connectPort,
                                         nullptr, run, nullptr, cleanup, extensionOfLarge}};

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index < kEffects.size() ? &kEffects[index] : nullptr;
}
