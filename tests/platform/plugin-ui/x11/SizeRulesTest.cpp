#include <gtest/gtest.h>

#include <limits>

#include "platform/plugin-ui/x11/X11SizeRules.h"

namespace {

using namespace orvalo;

TEST(SizeRules, FillTheAreaWithoutHints) {
    X11SizeRules rules;
    rules.requested = {300, 200};
    EXPECT_FALSE(rules.isFixed());
    EXPECT_EQ(rules.fit({800, 600}), (X11Size{800, 600}));
    EXPECT_EQ(rules.fit({0, 0}), (X11Size{1, 1}));
    EXPECT_EQ(rules.minimumSize(), (X11Size{1, 1}));
}

TEST(SizeRules, StayWithinTheHints) {
    X11SizeRules rules;
    rules.requested = {300, 200};
    rules.smallest = {400, 300};
    rules.largest = {500, 1000};
    EXPECT_EQ(rules.fit({800, 600}), (X11Size{500, 600}));
    EXPECT_EQ(rules.fit({100, 100}), (X11Size{400, 300}));
    EXPECT_EQ(rules.minimumSize(), (X11Size{400, 300}));
}

TEST(SizeRules, HaveOneSizeWhenTheHintsFixIt) {
    X11SizeRules rules;
    rules.requested = {999, 999};
    rules.smallest = {400, 300};
    rules.largest = {400, 300};
    EXPECT_TRUE(rules.isFixed());
    EXPECT_EQ(rules.fit({800, 600}), (X11Size{400, 300}));
    EXPECT_EQ(rules.minimumSize(), (X11Size{400, 300}));
}

TEST(SizeRules, StayWithinTheLimitWhateverTheHints) {
    constexpr int kMost = std::numeric_limits<int>::max();
    X11SizeRules rules;
    rules.smallest = {kMost, 200};
    EXPECT_EQ(rules.fit({800, 600}), (X11Size{X11SizeRules::kNoLimit, 600}));
    EXPECT_EQ(rules.minimumSize(), (X11Size{X11SizeRules::kNoLimit, 200}));
    rules.smallest = {-kMost, -kMost};
    rules.largest = {-1, kMost};
    EXPECT_EQ(rules.fit({800, kMost}), (X11Size{1, X11SizeRules::kNoLimit}));
    rules.isStatedFixed = true;
    rules.requested = {kMost, kMost};
    rules.largest = {kMost, kMost};
    EXPECT_EQ(rules.minimumSize(), (X11Size{X11SizeRules::kNoLimit, X11SizeRules::kNoLimit}));
}

TEST(SizeRules, KeepTheRequestedSizeWhenTheDataFixIt) {
    X11SizeRules rules;
    rules.isStatedFixed = true;
    rules.requested = {640, 480};
    EXPECT_EQ(rules.fit({100, 2000}), (X11Size{640, 480}));
    EXPECT_EQ(rules.minimumSize(), (X11Size{640, 480}));
}

TEST(SizeRules, KeepTheAspect) {
    X11SizeRules rules;
    rules.narrowest = {4, 3};
    rules.widest = {4, 3};
    EXPECT_EQ(rules.fit({800, 300}), (X11Size{400, 300}));
    EXPECT_EQ(rules.fit({400, 900}), (X11Size{400, 300}));
    rules.widest = {2, 1};
    EXPECT_EQ(rules.fit({800, 300}), (X11Size{600, 300}));
    EXPECT_EQ(rules.fit({500, 300}), (X11Size{500, 300}));
}

TEST(SizeRules, PreferTheSmallestSizeWhenTheHintsContradict) {
    X11SizeRules rules;
    rules.requested = {50, 50};
    rules.smallest = {400, 300};
    rules.largest = {10, 10};
    EXPECT_EQ(rules.fit({800, 600}), (X11Size{400, 300}));
}

TEST(SizeRules, IntersectionIsEmptyWithoutACommonPart) {
    EXPECT_EQ(intersection({0, 0, 10, 10}, {5, -5, 10, 10}), (X11Rect{5, 0, 5, 5}));
    EXPECT_TRUE(intersection({0, 0, 10, 10}, {10, 0, 5, 5}).isEmpty());
}

}  // namespace
