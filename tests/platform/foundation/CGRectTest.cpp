#include "platform/foundation/CGRect.h"

#include <gtest/gtest.h>

namespace orvalo {
namespace {

TEST(CGRect, KeepsARectangleInStandardForm) {
    const CGRect rectangle(10, -20, 30.5, 0);
    EXPECT_EQ(rectangle.minX(), 10);
    EXPECT_EQ(rectangle.minY(), -20);
    EXPECT_EQ(rectangle.width(), 30.5);
    EXPECT_EQ(rectangle.height(), 0);
}

TEST(CGRect, NegativeSizesExtendToTheLeftAndUp) {
    const CGRect rectangle(0, 7, -50, -9);
    EXPECT_EQ(rectangle.minX(), -50);
    EXPECT_EQ(rectangle.minY(), -2);
    EXPECT_EQ(rectangle.width(), 50);
    EXPECT_EQ(rectangle.height(), 9);
    EXPECT_EQ(rectangle, CGRect(0, 7, -50, -9));
}

}  // namespace
}  // namespace orvalo
