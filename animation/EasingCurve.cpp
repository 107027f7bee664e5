// The catalogue. In its formulas t is the frame, b the start, c the change and d the length, as in
// the literature on these curves; u is the share of the way, t/d, or t/(d/2) in the two halves of
// an In-Out curve, whose h is half the change. A power is the product written out where it stands:
// every operation rounds to single precision, so their order is part of a curve.

#include "animation/EasingCurve.h"

#include <cfloat>
#include <cmath>
#include <numbers>

#include "animation/CheckedInt.h"
#include "animation/OutIn.h"

// Nor may the compiler contract or reorder: the build says -ffp-contract=off.
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
/// from b + 2c to b + c, and its In-Out curve leaps in the middle and falls from b + 3c/2.
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
    /// Half the share, not the share of a half: it creeps until the last frame and leaps there.
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
    /// At a share x of d, the sine with the period p that crosses zero a quarter of p later.
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

/// In and In-Out work on whole frames, to which they convert back.
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
    /// The frame as the conversion to a whole number and back gives it. Made of frames that were
    /// whole numbers, it is one already; only its size can be wrong.
    static float wholeFrame(float frame) {
        static_cast<void>(checkedInt(frame));
        return frame;
    }

    /// Four arcs of a parabola, each around its middle and on its height. Which one it is takes no
    /// branch, as nobody could foresee it; where u is no number, the last.
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

/// A family's curves where they depend on the frame by its share alone.
template <typename Family>
struct Shares {
    static float easeIn(float t, float b, float c, float d) { return Family::in(t / d, b, c); }
    static float easeOut(float t, float b, float c, float d) { return Family::out(t / d, b, c); }
    static float easeInOut(float t, float b, float c, float d) {
        const float u = t / (d / 2);
        return isBelow1(t, d / 2) ? Family::first(u, b, c / 2) : Family::second(u, b, c / 2);
    }

  private:
    /// Whether t / half, rounded, is below 1. The float next below half is below it by so much that
    /// no quotient below 1 is rounded to 1, so nobody need wait for the division: to have foreseen
    /// the wrong half then costs less. t and half: whole numbers and their halves.
    static bool isBelow1(float t, float half) { return half < 0 ? t > half : t < half; }
};

template <float (*formula)(float t, float b, float c, float d)>
float curve(std::int64_t t, float b, float c, std::int64_t d) {
    return formula(static_cast<float>(t), b, c, static_cast<float>(d));
}

template <EasingCurve out, EasingCurve in>
float outInCurve(std::int64_t t, float b, float c, std::int64_t d) {
    return outIn(out, in, t, b, c, d);
}

/// The curves of the families in order, four of each, behind easeNone.
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

}  // namespace orvalo
