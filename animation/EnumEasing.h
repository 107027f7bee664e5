#pragma once

#include <cstdint>
#include <optional>

namespace orvalo {

/// The easing curves: how a value moves from its start to its end. In starts slowly, Out ends
/// slowly, In-Out does both, Out-In is fast at both ends and slow in the middle.
enum class EnumEasing : std::int64_t {
    EASING_easeNone,
    EASING_easeInQuad,
    EASING_easeOutQuad,
    EASING_easeInOutQuad,
    EASING_easeOutInQuad,
    EASING_easeInCubic,
    EASING_easeOutCubic,
    EASING_easeInOutCubic,
    EASING_easeOutInCubic,
    EASING_easeInQuart,
    EASING_easeOutQuart,
    EASING_easeInOutQuart,
    EASING_easeOutInQuart,
    EASING_easeInQuint,
    EASING_easeOutQuint,
    EASING_easeInOutQuint,
    EASING_easeOutInQuint,
    EASING_easeInSine,
    EASING_easeOutSine,
    EASING_easeInOutSine,
    EASING_easeOutInSine,
    EASING_easeInExpo,
    EASING_easeOutExpo,
    EASING_easeInOutExpo,
    EASING_easeOutInExpo,
    EASING_easeInCirc,
    EASING_easeOutCirc,
    EASING_easeInOutCirc,
    EASING_easeOutInCirc,
    EASING_easeInElastic,
    EASING_easeOutElastic,
    EASING_easeInOutElastic,
    EASING_easeOutInElastic,
    EASING_easeInBack,
    EASING_easeOutBack,
    EASING_easeInOutBack,
    EASING_easeOutInBack,
    EASING_easeInBounce,
    EASING_easeOutBounce,
    EASING_easeInOutBounce,
    EASING_easeOutInBounce,
    EASING_easeLast,  ///< The number of curves. An animator treats it as easeNone.
};

constexpr std::int64_t rawValue(EnumEasing type) {
    return static_cast<std::int64_t>(type);
}

/// The case with that raw value, 0 to 41; nothing for any other.
constexpr std::optional<EnumEasing> enumEasing(std::int64_t rawValue) {
    if (rawValue < 0 || rawValue > orvalo::rawValue(EnumEasing::EASING_easeLast)) {
        return std::nullopt;
    }
    return static_cast<EnumEasing>(rawValue);
}

}  // namespace orvalo
