#include "animation/EasingFormula.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>

#include "animation/EasingCurve.h"

namespace orvalo {
namespace {

EnumEasing curve(std::size_t number) {
    return static_cast<EnumEasing>(number);
}

/// A program for awk with a function for each formula, which prints the values of all curves from
/// frame 0 to the last one.
std::string program(int frames) {
    std::ostringstream text;
    text << "function pow(x, y) { return x ^ y }\n";
    for (std::size_t number = 0; number < easingCount; ++number) {
        auto formula = easingFormula(curve(number));
        const auto last = formula.rfind(';');
        formula.insert(last == std::string::npos ? 0 : last + 1, " return ");
        text << "function " << easingName(curve(number)) << "(t, b, c, d,  u, v, p, w) { "
             << formula << " }\n";
    }
    text << "BEGIN { pi = 3.14159265358979; for (t = 0; t <= " << frames << "; ++t) {\n";
    for (std::size_t number = 0; number < easingCount; ++number) {
        text << R"(printf "%.9f\n", )" << easingName(curve(number)) << "(t, 10, 4, " << frames
             << ")\n";
    }
    text << "} }\n";
    return text.str();
}

TEST(EasingFormula, GivesTheValuesOfItsCurve) {
    constexpr int frames = 40;
    const auto command = "awk '" + program(frames) + "'";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(popen(command.c_str(), "r"),
                                                                 pclose);
    ASSERT_NE(output, nullptr);
    for (int frame = 0; frame <= frames; ++frame) {
        for (std::size_t number = 0; number < easingCount; ++number) {
            double value = 0.0;
            ASSERT_EQ(std::fscanf(output.get(), "%lf", &value), 1);
            EXPECT_NEAR(value, static_cast<double>(easingCurves.at(number)(frame, 10, 4, frames)),
                        2e-4)
                << easingName(curve(number)) << " at " << frame;
        }
    }
}

TEST(EasingFormula, IsEmptyWithoutACurve) {
    EXPECT_EQ(easingFormula(EnumEasing::EASING_easeLast), "");
    EXPECT_EQ(easingDeviation(EnumEasing::EASING_easeLast), "");
}

// A curve that ends where it should, stays near its bounds and does not jump deviates from nothing.
TEST(EasingFormula, TheCurvesThatStartOrJumpElsewhereAreTheOnesThatDeviate) {
    constexpr int frames = 1000;
    for (std::size_t number = 0; number < easingCount; ++number) {
        const auto value = [&](int frame) {
            return easingCurves.at(number)(frame, 0.0F, 1.0F, frames);
        };
        bool isOdd = std::abs(value(0)) > 0.01F || std::abs(value(frames) - 1) > 0.01F;
        for (int frame = 1; frame <= frames; ++frame) {
            isOdd = isOdd || std::abs(value(frame) - value(frame - 1)) > 0.3F;
        }
        EXPECT_EQ(!easingDeviation(curve(number)).empty(), isOdd) << easingName(curve(number));
    }
}

}  // namespace
}  // namespace orvalo
