#include "animation/EasingFormula.h"

#include <array>
#include <cstddef>

#include "animation/EasingCurve.h"

namespace orvalo {

namespace {

struct Family {
    const char* in;
    const char* out;
    const char* inOut;
};

constexpr std::array<Family, 10> kFamilies{
    {{"u = t / d; c * u * u + b", "u = t / d; -c * u * (u - 2) + b",
      "u = t / (d / 2); u < 1 ? c / 2 * u * u + b : -c / 2 * ((u - 1) * (u - 3) - 1) + b"},
     {"u = t / d; c * u * u * u + b", "u = t / d - 1; c * (u * u * u + 1) + b",
      "u = t / (d / 2); v = u - 2; "
      "u < 1 ? c / 2 * u * u * u + b : c / 2 * (v * v * v + 2) + b"},
     {"u = t / d; c * u * u * u * u + b", "u = t / d - 1; c * (u * u * u * u + 1) + b",
      "u = t / (d / 2); v = u - 2; "
      "u < 1 ? c / 2 * u * u * u * u + b : c / 2 * (v * v * v * v + 2) + b"},
     {"u = t / d; c * u * u * u * u * u + b", "u = t / d - 1; c * (u * u * u * u * u + 1) + b",
      "u = t / (d / 2); v = u - 2; "
      "u < 1 ? c / 2 * u * u * u * u * u + b : c / 2 * (v * v * v * v * v + 2) + b"},
     {"-c * cos(t / d * pi / 2) + c + b", "c * sin(t / d * pi / 2) + b",
      "-c / 2 * (cos(pi * t / d) - 1) + b"},
     {"t == 0 ? b : c * pow(2, 10 * (t / d - 1)) + b",
      "t == d ? b + c : c * (-pow(2, -10 * t / d) + 1) + b",
      "u = t / d / 2; t == 0 ? b : t == d ? b + c : "
      "u < 1 ? c / 2 * pow(2, 10 * (u - 1)) + b : c / 2 * (-pow(2, -10 * (u - 1)) + 2) + b"},
     {"u = t / d; -c * (sqrt(1 - u * u) - 1) + b", "u = t / d - 1; c * sqrt(1 - u * u) + b",
      "u = t / (d / 2); v = u - 2; "
      "u < 1 ? -c / 2 * (sqrt(1 - u * u) - 1) + b : c / 2 * (sqrt(1 - v * v) + 1) + b"},
     {"u = t / d - 1; p = d * 0.3; t == 0 ? b : t == d ? b + c : "
      "-(c * pow(2, 10 * u) * sin((u * d - p / 4) * 2 * pi / p)) + b",
      "u = t / d; p = d * 0.3; t == 0 ? b : t == d ? b + c : "
      "c * pow(2, -10 * u) * sin((u * d - p / 4) * 2 * pi / p) + c + b",
      "u = t / (d / 2) - 1; p = d * 0.45; w = sin((u * d - p / 4) * 2 * pi / p); "
      "t == 0 ? b : t == d ? b + c : "
      "u < 0 ? -0.5 * c * pow(2, 10 * u) * w + b : 0.5 * c * pow(2, -10 * u) * w + c + b"},
     {"u = t / d; c * u * u * (2.70158 * u - 1.70158) + b",
      "u = t / d - 1; c * (u * u * (2.70158 * u + 1.70158) + 1) + b",
      "u = t / (d / 2); v = u - 2; "
      "u < 1 ? c / 2 * u * u * (3.5949094 * u - 2.5949094) + b : "
      "c / 2 * (v * v * (3.5949094 * v + 2.5949094) + 2) + b"},
     {"c - easeOutBounce(d - t, 0, c, d) + b",
      "u = 2.75 * t / d; u < 1 ? c * u * u + b : "
      "u < 2 ? c * ((u - 1.5) * (u - 1.5) + 0.75) + b : "
      "u < 2.5 ? c * ((u - 2.25) * (u - 2.25) + 0.9375) + b : "
      "c * ((u - 2.625) * (u - 2.625) + 0.984375) + b",
      "t < d / 2 ? easeInBounce(2 * t, 0, c, d) / 2 + b : "
      "easeOutBounce(2 * t - d, 0, c, d) / 2 + c / 2 + b"}}};

constexpr std::size_t kWays = 4;
static_assert(easingCount == 1 + kWays * kFamilies.size());

}  // namespace

std::string easingFormula(EnumEasing type) {
    const auto number = static_cast<std::size_t>(rawValue(type));
    if (number == 0) {
        return "c * t / d + b";
    }
    if (number >= easingCount) {
        return {};
    }
    const auto& family = kFamilies.at((number - 1) / kWays);
    switch ((number - 1) % kWays) {
        case 0:
            return family.in;
        case 1:
            return family.out;
        case 2:
            return family.inOut;
        default: {
            const auto out = easingName(static_cast<EnumEasing>(number - 2));
            const auto in = easingName(static_cast<EnumEasing>(number - 3));
            return "t < d / 2 ? " + out + "(2 * t, b, c / 2, d) : " + in +
                   "(2 * t - d, b + c / 2, c / 2, d)";
        }
    }
}

std::string easingDeviation(EnumEasing type) {
    switch (type) {
        case EnumEasing::EASING_easeOutQuart:
            return "It starts at b + 2c and falls to b + c.";
        case EnumEasing::EASING_easeInOutQuart:
            return "It jumps from b + c/2 to b + 3c/2 in the middle and falls to b + c.";
        case EnumEasing::EASING_easeOutInQuart:
            return "Its first half starts at b + c and falls to b + c/2.";
        case EnumEasing::EASING_easeInOutExpo:
            return "It creeps until the last frame and jumps to the end.";
        default:
            return {};
    }
}

}  // namespace orvalo
