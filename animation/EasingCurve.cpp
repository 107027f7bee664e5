// The formulas. t: frame, b: start value, c: change, d: length in frames, as in the literature on
// these curves. u: t / d, or t / (d / 2) in the two halves of an In-Out curve; h: c / 2. Powers are
// written out as products because every operation rounds to single precision: the order of the
// operations is part of the curve.

#include "animation/EasingCurve.h"

#include <cfloat>
#include <cmath>
#include <numbers>
#include <string_view>

#include "platform/foundation/FatalError.h"

// The compiler must not contract operations either: the build sets -ffp-contract=off.
static_assert(FLT_EVAL_METHOD == 0, "The curves are defined by single-precision operations.");
#ifdef __FAST_MATH__
#error "The curves are defined by the order of their operations."
#endif

namespace orvalo {

namespace {

constexpr float pi = std::numbers::pi_v<float>;

float powerOf2(float exponent) {
    return std::pow(2.0f, exponent);
}

/// x * u * ... * u, from the left.
template <int exponent>
float timesPower(float x, float u) {
    if constexpr (exponent == 0) {
        return x;
    } else {
        return timesPower<exponent - 1>(x * u, u);
    }
}

float easeNone(float t, float b, float c, float d) {
    return c * t / d + b;
}

struct Quad {
    static float in(float u, float b, float c) { return c * u * u + b; }
    static float out(float u, float b, float c) { return -c * u * (u - 2) + b; }
    static float first(float u, float b, float h) { return in(u, b, h); }
    static float second(float u, float b, float h) { return -h * ((u - 1) * (u - 1 - 2) - 1) + b; }
};

/// Cubic, Quart and Quint. Quart has the signs of the odd powers on purpose: its Out curve falls
/// from b + 2c to b + c, and its In-Out curve jumps in the middle and falls from b + 3c/2.
template <int exponent>
struct Power {
    static float in(float u, float b, float c) { return timesPower<exponent>(c, u) + b; }
    static float out(float u, float b, float c) {
        return c * (timesPower<exponent>(1, u - 1) + 1) + b;
    }
    static float first(float u, float b, float h) { return in(u, b, h); }
    static float second(float u, float b, float h) {
        return h * (timesPower<exponent>(1, u - 2) + 2) + b;
    }
};

struct Sine {
    static float easeIn(float t, float b, float c, float d) {
        return -c * std::cos(t / d * pi / 2) + c + b;
    }
    static float easeOut(float t, float b, float c, float d) {
        return c * std::sin(t / d * pi / 2) + b;
    }
    static float easeInOut(float t, float b, float c, float d) {
        return -c / 2 * (std::cos(pi * t / d) - 1) + b;
    }
};

struct Expo {
    static float easeIn(float t, float b, float c, float d) {
        return t == 0 ? b : c * powerOf2(10 * (t / d - 1)) + b;
    }
    static float easeOut(float t, float b, float c, float d) {
        return t == d ? b + c : c * (-powerOf2(-10 * t / d) + 1) + b;
    }
    /// u = t / d / 2 on purpose, not t / (d / 2): the value creeps until the last frame and jumps.
    static float easeInOut(float t, float b, float c, float d) {
        if (t == 0) {
            return b;
        }
        if (t == d) {
            return b + c;
        }
        const float u = t / d / 2;
        return u < 1 ? c / 2 * powerOf2(10 * (u - 1)) + b
                     : c / 2 * (-powerOf2(-10 * (u - 1)) + 2) + b;
    }
};

struct Circ {
    static float in(float u, float b, float c) { return -c * (std::sqrt(1 - u * u) - 1) + b; }
    static float out(float u, float b, float c) { return c * std::sqrt(1 - (u - 1) * (u - 1)) + b; }
    static float first(float u, float b, float h) { return in(u, b, h); }
    static float second(float u, float b, float h) {
        return h * (std::sqrt(1 - (u - 2) * (u - 2)) + 1) + b;
    }
};

struct Elastic {
    static constexpr float period = 0.3f;
    static constexpr float longPeriod = 0.45000002f;

    static float easeIn(float t, float b, float c, float d) {
        if (t == 0) {
            return b;
        }
        const float u = t / d;
        return u == 1 ? b + c : -(c * powerOf2(10 * (u - 1)) * wave(u - 1, d, d * period)) + b;
    }
    static float easeOut(float t, float b, float c, float d) {
        if (t == 0) {
            return b;
        }
        const float u = t / d;
        return u == 1 ? b + c : c * powerOf2(-10 * u) * wave(u, d, d * period) + c + b;
    }
    static float easeInOut(float t, float b, float c, float d) {
        if (t == 0) {
            return b;
        }
        const float u = t / (d / 2);
        if (u == 2) {
            return b + c;
        }
        const float height = wave(u - 1, d, d * longPeriod);
        return u < 1 ? -0.5f * (c * powerOf2(10 * (u - 1)) * height) + b
                     : c * powerOf2(-10 * (u - 1)) * height * 0.5f + c + b;
    }

  private:
    /// The sine of period p at frame x * d, shifted right by p / 4.
    static float wave(float x, float d, float p) {
        return std::sin((x * d - p / 4) * (2 * pi) / p);
    }
};
static_assert(Elastic::longPeriod == Elastic::period * 1.5f);

struct Back {
    static float in(float u, float b, float c) { return c * u * u * (2.70158f * u - 1.70158f) + b; }
    static float out(float u, float b, float c) {
        return c * ((u - 1) * (u - 1) * (2.70158f * (u - 1) + 1.70158f) + 1) + b;
    }
    static float first(float u, float b, float h) {
        return h * (u * u * (3.5949094f * u - 2.5949094f)) + b;
    }
    static float second(float u, float b, float h) {
        return h * ((u - 2) * (u - 2) * (3.5949094f * (u - 2) + 2.5949094f) + 2) + b;
    }
};

[[noreturn]] void failToConvert(float value) {
    if (!std::isfinite(value)) {
        fatalError("Float value cannot be converted to Int because it is either infinite or NaN");
    }
    if (value < 0) {
        fatalError(
            "Float value cannot be converted to Int because the result would be less than Int.min");
    }
    fatalError(
        "Float value cannot be converted to Int because the result would be greater than Int.max");
}

/// In and In-Out convert their frames to 64-bit integers.
struct Bounce {
    static float easeIn(float t, float b, float c, float d) {
        const float remaining = wholeFrame(d - t);
        const float length = wholeFrame(d);
        return c - easeOut(remaining, 0, c, length) + b;
    }
    static float easeOut(float t, float b, float c, float d) { return c * height(t / d) + b; }
    static float easeInOut(float t, float b, float c, float d) {
        const bool isFirst = t < d / 2;
        const float doubled = wholeFrame(isFirst ? t * 2 : t * 2 - d);
        const float length = wholeFrame(d);
        return isFirst ? easeIn(doubled, 0, c, length) * 0.5f + b
                       : easeOut(doubled, 0, c, length) * 0.5f + c * 0.5f + b;
    }

  private:
    /// Checks that the frame fits a 64-bit integer and returns it: frames are whole already, so the
    /// conversion itself changes nothing.
    static float wholeFrame(float frame) {
        constexpr float belowInts = -9223373136366403584.0f;  // The next float below -2^63.
        constexpr float aboveInts = 9223372036854775808.0f;   // 2^63.
        if (!(belowInts < frame && frame < aboveInts)) {
            failToConvert(frame);
        }
        return frame;
    }

    /// Four arcs of a parabola. The arc is found without a branch, which the processor would
    /// mispredict. The last arc when u is NaN.
    static float height(float u) {
        struct Arc {
            float middle;
            float lift;
        };
        static constexpr std::array<Arc, 4> fromLast{
            {{0.95454544f, 0.984375f}, {0.8181818f, 0.9375f}, {0.54545456f, 0.75f}, {0, 0}}};
        constexpr auto firstEnd = static_cast<float>(1 / 2.75);
        const int ends = (u < firstEnd) + (u < 0.72727275f) + (u < 0.90909094f);
        const Arc& arc = fromLast[static_cast<std::size_t>(ends)];
        const float x = u - arc.middle;
        return 7.5625f * x * x + arc.lift;
    }
};

/// The curves of a family whose formulas need only u.
template <typename Family>
struct Shares {
    static float easeIn(float t, float b, float c, float d) { return Family::in(t / d, b, c); }
    static float easeOut(float t, float b, float c, float d) { return Family::out(t / d, b, c); }
    static float easeInOut(float t, float b, float c, float d) {
        const float u = t / (d / 2);
        return u < 1 ? Family::first(u, b, c / 2) : Family::second(u, b, c / 2);
    }
};

template <float (*formula)(float t, float b, float c, float d)>
float curve(std::int64_t t, float b, float c, std::int64_t d) {
    return formula(static_cast<float>(t), b, c, static_cast<float>(d));
}

template <EasingCurve out, EasingCurve in>
float outInCurve(std::int64_t t, float b, float c, std::int64_t d) {
    return outIn(out, in, t, b, c, d);
}

/// easeNone, then the four curves of each family in order.
template <typename... Family>
constexpr std::array<EasingCurve, easingCount> catalogue() {
    std::array<EasingCurve, easingCount> curves{curve<easeNone>};
    std::size_t place = 0;
    ((curves[++place] = curve<Family::easeIn>, curves[++place] = curve<Family::easeOut>,
      curves[++place] = curve<Family::easeInOut>,
      curves[++place] = outInCurve<curve<Family::easeOut>, curve<Family::easeIn>>),
     ...);
    return curves;
}

}  // namespace

constexpr std::array<EasingCurve, easingCount> easingCurves =
    catalogue<Shares<Quad>, Shares<Power<3>>, Shares<Power<4>>, Shares<Power<5>>, Sine, Expo,
              Shares<Circ>, Elastic, Shares<Back>, Bounce>();

std::string easingName(EnumEasing type) {
    static constexpr std::array<std::string_view, 4> ways{"In", "Out", "InOut", "OutIn"};
    static constexpr std::array<std::string_view, 10> families{
        "Quad", "Cubic", "Quart", "Quint", "Sine", "Expo", "Circ", "Elastic", "Back", "Bounce"};
    static_assert(easingCount == 1 + ways.size() * families.size());

    if (type == EnumEasing::EASING_easeNone) {
        return "easeNone";
    }
    const auto place = static_cast<std::size_t>(rawValue(type)) - 1;
    if (place >= ways.size() * families.size()) {
        return {};
    }
    std::string name("ease");
    name += ways.at(place % ways.size());
    name += families.at(place / ways.size());
    return name;
}

}  // namespace orvalo
