#include <gtest/gtest.h>

#include <limits>

#include "support/view/ColorComponents.h"

namespace orvalo {
namespace {

TEST(Color, ReturnsItsComponents) {
    const UIColor color(0.25, 0.5, 0.75, 0.125);
    EXPECT_EQ(redValue(color), 0.25);
    EXPECT_EQ(greenValue(color), 0.5);
    EXPECT_EQ(blueValue(color), 0.75);
    EXPECT_EQ(alphaValue(color), 0.125);
}

TEST(Color, CreatesAGreyOfEqualComponents) {
    const UIColor grey(0.3, 0.9);
    EXPECT_EQ(redValue(grey), 0.3);
    EXPECT_EQ(greenValue(grey), 0.3);
    EXPECT_EQ(blueValue(grey), 0.3);
    EXPECT_EQ(alphaValue(grey), 0.9);
}

TEST(Color, ClampsNothing) {
    const UIColor color(-1.5, 2, std::numeric_limits<double>::infinity(), -0.0);
    EXPECT_EQ(redValue(color), -1.5);
    EXPECT_EQ(greenValue(color), 2);
    EXPECT_EQ(blueValue(color), std::numeric_limits<double>::infinity());
    EXPECT_EQ(alphaValue(color), 0);
}

TEST(Color, IsUnchangedForImageProcessing) {
    const CIColor color(UIColor(0.1, 0.2, 0.3, 0.4));
    EXPECT_EQ(color.red, 0.1);
    EXPECT_EQ(color.green, 0.2);
    EXPECT_EQ(color.blue, 0.3);
    EXPECT_EQ(color.alpha, 0.4);
}

}  // namespace
}  // namespace orvalo
