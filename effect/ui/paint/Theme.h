#pragma once

#include <cstdint>

namespace orvalo::effect::ui {

/// A colour for cairo; components from 0 to 1.
struct Colour {
    double red;
    double green;
    double blue;
    double alpha = 1.0;

    /// rgb: 0xRRGGBB.
    static constexpr Colour of(std::uint32_t rgb) {
        constexpr double full = 255.0;
        return {((rgb >> 16U) & 0xFFU) / full, ((rgb >> 8U) & 0xFFU) / full, (rgb & 0xFFU) / full};
    }

    constexpr Colour withAlpha(double share) const { return {red, green, blue, alpha * share}; }
};

/// The colours of the UI: greys on a dark ground, one accent colour for the compressor's activity,
/// one for notes and ducking, and one signal colour for errors and overloads. Text is in text or
/// dimText: each has a contrast of at least 4.5:1 on ground, panel and raised.
namespace theme {

/// Also the window background until the first picture.
inline constexpr std::uint32_t groundPixel = 0x121518;
inline constexpr Colour ground = Colour::of(groundPixel);
inline constexpr Colour panel = Colour::of(0x1B1F24);
inline constexpr Colour raised = Colour::of(0x282E35);
inline constexpr Colour raisedLight = Colour::of(0x353D46);
inline constexpr Colour line = Colour::of(0x2E353D);
inline constexpr Colour track = Colour::of(0x363E47);
inline constexpr Colour text = Colour::of(0xE2E8ED);
inline constexpr Colour dimText = Colour::of(0x98A4B0);
inline constexpr Colour level = Colour::of(0x6F7E8D);
inline constexpr Colour accent = Colour::of(0x5FC9B8);
inline constexpr Colour ducking = Colour::of(0xE3A84B);
inline constexpr Colour inactive = Colour::of(0x636E78);
inline constexpr Colour signal = Colour::of(0xEF705F);

}  // namespace theme

}  // namespace orvalo::effect::ui
