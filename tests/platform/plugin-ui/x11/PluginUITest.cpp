#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/foundation/NSError.h"
#include "tests/platform/plugin-ui/x11/PluginUIFixture.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using zoo::Misdeed;

constexpr std::uint32_t kGain = 4;
constexpr std::uint32_t kCount = 5;

using PluginUI = PluginUIFixture;

TEST_F(PluginUI, FillsItsArea) {
    open();
    EXPECT_EQ(record_.instantiations, 1);
    ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0 && record_.width == 400; }));
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{150, 140, 400, 300}));
    EXPECT_EQ(record_.height, 300);
    EXPECT_EQ(record_.toldWidth, 400);
    EXPECT_EQ(record_.toldHeight, 300);
    EXPECT_TRUE(waitForColor(200, 200, 0x336699U));
    EXPECT_TRUE(waitForColor(120, 120, 0x202020U));
}

TEST_F(PluginUI, GetsTheHostsFeaturesAndOptions) {
    open();
    for (const std::string feature :
         {"http://lv2plug.in/ns/ext/urid#map", "http://lv2plug.in/ns/ext/urid#unmap",
          "http://lv2plug.in/ns/ext/options#options", "http://lv2plug.in/ns/ext/log#log",
          "http://lv2plug.in/ns/extensions/ui#parent", "http://lv2plug.in/ns/extensions/ui#resize",
          "http://lv2plug.in/ns/extensions/ui#portMap",
          "http://lv2plug.in/ns/extensions/ui#portSubscribe",
          "http://lv2plug.in/ns/extensions/ui#touch",
          "http://lv2plug.in/ns/extensions/ui#idleInterface",
          "http://lv2plug.in/ns/extensions/ui#requestValue",
          "http://lv2plug.in/ns/ext/instance-access", "http://lv2plug.in/ns/ext/data-access"}) {
        EXPECT_THAT(record_.features, Contains(feature));
    }
    EXPECT_EQ(record_.updateRate, 60.0F);
    EXPECT_EQ(record_.scaleFactor, 2.0F);
    EXPECT_EQ(record_.sampleRate, 48000.0F);
    EXPECT_EQ(record_.windowTitle, "UI probe");
    EXPECT_EQ(record_.gainIndex, kGain);
    EXPECT_EQ(record_.unknownIndex, 0xFFFFFFFFU);
    // Accepted: the output's events, a control's values. Refused: an input's events, peaks, an
    // unknown port.
    EXPECT_EQ(record_.subscriptions, 11010U);
    commit(Misdeed::requestValue);
    EXPECT_EQ(record_.requested, 3);
}

TEST_F(PluginUI, GetsTheControlsAndTheirChanges) {
    open();
    EXPECT_EQ(record_.values[kGain], 0.5F);
    EXPECT_EQ(record_.valueCounts[kGain], 1);
    EXPECT_EQ(record_.valueCounts[kCount], 1);
    unit_->controls().setValue(kGain, 3.5F);
    ASSERT_TRUE(pollUntil([this] { return record_.values[kGain] == 3.5F; }));
    runFor(20);
    EXPECT_EQ(record_.valueCounts[kGain], 2);
    EXPECT_EQ(record_.valueCounts[kCount], 1);
}

TEST_F(PluginUI, SetsAControlByClickAndDragAndDoesNotGetItBack) {
    open();
    ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    click(150 + 120, 200);
    ASSERT_TRUE(pollUntil([this] { return unit_->controls().value(kGain) == 1.2F; }));
    movePointer(150 + 50, 200);
    pressButton(1);
    movePointer(150 + 90, 210);
    // Beyond its edge: the pressed button grabs the pointer.
    movePointer(150 + 410, 210);
    ASSERT_TRUE(pollUntil([this] { return unit_->controls().value(kGain) == 4.1F; }));
    releaseButton(1);
    EXPECT_EQ(record_.valueCounts[kGain], 1);
    EXPECT_EQ(record_.clicks, 2);
}

TEST_F(PluginUI, ExchangesEventsWithTheEffect) {
    open();
    ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    click(200, 200, 3);
    ASSERT_TRUE(pollUntil([this] {
        render(*unit_);
        return !record_.events.empty();
    }));
    EXPECT_EQ(record_.events.size(), 1U);
    EXPECT_EQ(record_.events[0], (std::vector<unsigned char>{'h', 'e', 'l', 'l', 'o'}));
    ASSERT_TRUE(pollUntil([this] { return record_.values[kCount] == 1.0F; }));
}

TEST_F(PluginUI, GetsNoEventsWithoutASubscription) {
    open("fixed");
    ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    click(200, 200, 3);
    ASSERT_TRUE(pollUntil([this] {
        render(*unit_);
        return record_.values[kCount] == 1.0F;
    }));
    EXPECT_TRUE(record_.events.empty());
}

TEST_F(PluginUI, CannotWriteValuesThatAPortDoesNotAccept) {
    open();
    const CapturedOutput errors(2);
    commit(Misdeed::writeNonsense);
    EXPECT_EQ(unit_->controls().value(kGain), 0.5F);
    EXPECT_EQ(unit_->controls().value(kCount), 0.0F);
    EXPECT_THAT(errors.text(),
                HasSubstr("The UI of <urn:orvalo:ui:probe> wrote to port 4 what that "
                          "cannot take."));
    EXPECT_EQ(errors.text().find("wrote"), errors.text().rfind("wrote"));
}

TEST_F(PluginUI, IsClosedWhenItsIdleCallReportsThatItHasClosed) {
    open();
    record_.misdeed = Misdeed::close;
    ASSERT_TRUE(pollUntil([this] { return embedded_ == nullptr; }));
    EXPECT_EQ(closed_, (std::vector<std::string>{"it has closed itself"}));
    EXPECT_EQ(record_.cleanups, 1);
    const int idles = record_.idles;
    runFor(20);
    EXPECT_EQ(record_.idles, idles);
}

TEST_F(PluginUI, IsCleanedUpWhenItsOwnCallThatClosedItReturns) {
    open();
    int cleanups = -1;
    // Happens when the window is closed while the UI's message box runs the main loop.
    record_.onCall = [&] {
        embedded_ = nullptr;
        cleanups = record_.cleanups;
    };
    record_.misdeed = Misdeed::callOut;
    ASSERT_TRUE(pollUntil([this] { return record_.cleanups == 1; }));
    EXPECT_EQ(cleanups, 0);
    EXPECT_TRUE(closed_.empty());
}

TEST_F(PluginUI, IsClosedWhenItDestroysItsWindow) {
    open();
    record_.misdeed = Misdeed::destroyWindow;
    ASSERT_TRUE(pollUntil([this] { return embedded_ == nullptr; }));
    EXPECT_EQ(closed_, (std::vector<std::string>{"it has lost its window"}));
    EXPECT_EQ(record_.cleanups, 1);
}

TEST_F(PluginUI, IsClosedWhenTheToplevelIsDestroyed) {
    open();
    ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    toplevel_.destroy();
    ASSERT_TRUE(pollUntil([this] { return embedded_ == nullptr; }));
    EXPECT_EQ(closed_, (std::vector<std::string>{"it has lost its window"}));
}

TEST_F(PluginUI, SurvivesItsXErrorsAndLogsOneOfEachKind) {
    open();
    const CapturedOutput errors(2);
    commit(Misdeed::badWindow);
    commit(Misdeed::badWindow);
    EXPECT_THAT(errors.text(),
                AllOf(HasSubstr("made an X11 error (BadWindow (invalid Window parameter), request "
                                "8.0); ignored."),
                      HasSubstr("request 12.0); ignored.")));
    const auto text = errors.text();
    EXPECT_EQ(text.find("request 8.0"), text.rfind("request 8.0"));
    EXPECT_NE(embedded_, nullptr);
}

TEST_F(PluginUI, StaysInItsAreaWhateverSizeItRequests) {
    open();
    ASSERT_TRUE(pollUntil([this] { return record_.width == 400; }));
    int changes = 0;
    embedded_->onChange = [&changes] { ++changes; };
    commit(Misdeed::wantByWindow);
    ASSERT_TRUE(pollUntil([this] { return embedded_->rules().requested == X11Size{500, 120}; }));
    commit(Misdeed::wantByFeature);
    EXPECT_EQ(embedded_->rules().requested, (X11Size{400, 300}));
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{150, 140, 400, 300}));
}

TEST_F(PluginUI, IsCentredWhenItsHintsFixItsSize) {
    open();
    commit(Misdeed::fixHints);
    ASSERT_TRUE(pollUntil([this] { return record_.width == 200; }));
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{150 + 100, 140 + 75, 200, 150}));
    EXPECT_TRUE(waitForColor(160, 150, 0x202020U));
}

TEST_F(PluginUI, HasTheRequestedSizeWhenItsDataFixIt) {
    open("fixed");
    ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{150 + 50, 140 + 50, 300, 200}));
    commit(Misdeed::wantByWindow);
    ASSERT_TRUE(pollUntil([this] { return record_.width == 500; }));
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{150, 140 + 90, 500, 120}));
    EXPECT_EQ(embedded_->rules().minimumSize(), (X11Size{500, 120}));
}

TEST_F(PluginUI, IsClippedToTheVisiblePart) {
    open();
    commit(Misdeed::growHints);
    ASSERT_TRUE(pollUntil([this] { return record_.width == 900; }));
    EXPECT_EQ(embedded_->rules().minimumSize(), (X11Size{900, 700}));
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{150, 140, 900, 700}));
    EXPECT_TRUE(waitForColor(150 + 399, 140 + 299, 0x336699U));
    EXPECT_TRUE(waitForColor(150 + 400, 140 + 299, 0x202020U));
    // Scrolled by (60, 80).
    embedded_->place({-10, -40, 900, 700}, kArea);
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{90, 60, 900, 700}));
    EXPECT_TRUE(waitForColor(140, 200, 0x202020U));
    EXPECT_TRUE(waitForColor(150, 200, 0x336699U));
}

TEST_F(PluginUI, FollowsItsArea) {
    open();
    embedded_->place({0, 0, 640, 480}, {0, 0, 640, 480});
    ASSERT_TRUE(pollUntil([this] { return record_.width == 640 && record_.height == 480; }));
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{100, 100, 640, 480}));
    embedded_->place({20, 30, 640, 480}, {20, 30, 0, 0});
    EXPECT_TRUE(waitForRectangle(record_.window, {}));
}

TEST_F(PluginUI, PlacesItsOtherWindowsFreely) {
    open();
    ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    commit(Misdeed::secondWindow);
    EXPECT_TRUE(waitForRectangle(record_.second, X11Rect{160, 160, 60, 50}));
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{150, 140, 400, 300}));
}

TEST_F(PluginUI, IsUnmappedAndUpdatedLessOftenWhileHidden) {
    open("probe", false);
    EXPECT_TRUE(waitForRectangle(record_.window, {}));
    // The number of updates during 100 calls of the test's timer.
    const auto countUpdates = [this] {
        const int before = record_.idles;
        runFor(100);
        return record_.idles - before;
    };
    const int hidden = countUpdates();
    embedded_->setVisible(true);
    EXPECT_TRUE(waitForRectangle(record_.window, {150, 140, 400, 300}));
    const int shown = countUpdates();
    EXPECT_GT(shown, 3 * hidden);
    embedded_->setVisible(false);
    EXPECT_TRUE(waitForRectangle(record_.window, {}));
    // Changes reach the hidden UI, too.
    unit_->controls().setValue(kGain, 0.25F);
    ASSERT_TRUE(pollUntil([this] { return record_.values[kGain] == 0.25F; }));
}

TEST_F(PluginUI, StaysOpenWhenTheSampleRateChanges) {
    open();
    unit_->allocateRenderResources(96000.0);
    ASSERT_TRUE(pollUntil([this] { return record_.exposures > 0; }));
    runFor(20);
    EXPECT_EQ(record_.instantiations, 1);
    click(150 + 80, 200);
    ASSERT_TRUE(pollUntil([this] { return unit_->controls().value(kGain) == 0.8F; }));
}

TEST_F(PluginUI, IsRecreatedWhenTheInstanceThatItAccessesIsReplaced) {
    open("direct");
    const auto* before = record_.instance;
    ASSERT_NE(before, nullptr);
    unit_->allocateRenderResources(96000.0);
    ASSERT_TRUE(pollUntil([this] { return record_.instantiations == 2; }));
    EXPECT_EQ(record_.cleanups, 1);
    EXPECT_NE(record_.instance, before);
    ASSERT_TRUE(pollUntil([this] { return record_.width == 400; }));
    EXPECT_TRUE(waitForRectangle(record_.window, X11Rect{150, 140, 400, 300}));
}

TEST_F(PluginUI, ThrowsWhenItsInstantiationFails) {
    const auto refusal = [this](const std::string& name) -> std::string {
        try {
            open(name);
            return "";
        } catch (const NSError& error) {
            return error.localizedDescription();
        }
    };
    EXPECT_EQ(refusal("refusing"),
              "The UI of <urn:orvalo:ui:refusing> cannot be shown: it refuses to be "
              "made.");
}

TEST_F(PluginUI, IsClosedWhenItCreatesNoWindow) {
    open("windowless");
    ASSERT_TRUE(pollUntil([this] { return embedded_ == nullptr; }));
    EXPECT_EQ(closed_, (std::vector<std::string>{"it makes no window"}));
}

}  // namespace
