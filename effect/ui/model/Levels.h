#pragma once

namespace orvalo::effect::ui {

/// What the effect last showed of itself, in dB.
struct Levels {
    /// The effect's meters end here.
    static constexpr float lowest = -90.0F;

    float input = lowest;
    float output = lowest;
    float reduction = 0.0F;
    float ducking = 0.0F;

    bool operator==(const Levels&) const = default;
};

}  // namespace orvalo::effect::ui
