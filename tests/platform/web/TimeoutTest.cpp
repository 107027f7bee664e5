#include <gmock/gmock.h>

#include "tests/platform/web/WebFixture.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using enum RecordingDelegate::Answer;

constexpr double shortTime = 0.3;
/// Longer than the engine needs for a first response on a busy machine.
constexpr double ampleTime = 2;

class TimeoutTest : public WebFixture {
  protected:
    const Site site{{{"/", titled("start", "<a href='/never'>never</a>")},
                     {"/never", {.manner = Page::Manner::never}},
                     // Enough for the engine to detect the type of the content.
                     {"/half",
                      {.content = "<title>half</title>" + std::string(5000, ' '),
                       .manner = Page::Manner::half}},
                     {"/old", redirection("/never")},
                     {"/moved", redirection("/next")},
                     {"/picture", titled("picture", "<img src='/never'>")},
                     {"/next", titled("next")}}};

    // Loads a page first, so that the engine has started its processes.
    TimeoutTest() { loadWholly(site.address("/next"), "next"); }

    /// Waits for the log line of an address that timed out.
    bool waitForLine(const CapturedOutput& errors, const std::string& path,
                     const std::string& time = "2 s") const {
        const auto line =
            site.address(path) + " sent nothing for " + time + "; its load was stopped.";
        return waitUntil([&] { return errors.text().find(line) != std::string::npos; });
    }
};

TEST_F(TimeoutTest, APageWithoutAResponseTimesOut) {
    loadWholly(site.address("/"), "start");
    const CapturedOutput errors(2);
    load(site.address("/never"), shortTime);
    EXPECT_TRUE(waitForLine(errors, "/never", "0.3 s"));
    EXPECT_TRUE(waitForTitle("start"));
    EXPECT_TRUE(loadWholly(site.address("/next"), "next"));
    EXPECT_THAT(errors.text(), Not(HasSubstr("could not be loaded")));
}

TEST_F(TimeoutTest, AnIncompletePageTimesOut) {
    const CapturedOutput errors(2);
    load(site.address("/half"), shortTime);
    EXPECT_TRUE(waitForLine(errors, "/half", "0.3 s"));
    EXPECT_TRUE(loadWholly(site.address("/next"), "next"));
}

TEST_F(TimeoutTest, TheTargetOfARedirectionTimesOut) {
    const CapturedOutput errors(2);
    load(site.address("/old"), ampleTime);
    EXPECT_TRUE(waitForLine(errors, "/never"));
}

TEST_F(TimeoutTest, AMissingPictureTimesOut) {
    const CapturedOutput errors(2);
    load(site.address("/picture"), ampleTime);
    EXPECT_TRUE(waitForLine(errors, "/picture"));
    EXPECT_TRUE(waitForTitle("picture"));
}

TEST_F(TimeoutTest, AppliesToLinks) {
    load(site.address("/"), ampleTime);
    ASSERT_TRUE(waitForTitle("start"));
    const CapturedOutput errors(2);
    evaluate("document.querySelector('a').click()");
    EXPECT_TRUE(waitForLine(errors, "/never"));
    EXPECT_TRUE(waitForTitle("start"));
}

TEST_F(TimeoutTest, DoesNotCountTheDelegatesTimeForAResponse) {
    const CapturedOutput errors(2);
    delegate->onResponse = [](const auto&) { return hold; };
    load(site.address("/next"), ampleTime);
    ASSERT_TRUE(waitUntil([this] { return delegate->heldResponses.size() == 1; }));
    // Another load with the same time-out fails while the first one still waits.
    loadUntilTimeout(site.address("/never"), ampleTime);
    EXPECT_NE(webkit_web_view_is_loading(engine()), FALSE);
    delegate->heldResponses[0](WKNavigationResponsePolicy::allow);
    EXPECT_TRUE(waitForTitle("next"));
    EXPECT_THAT(errors.text(), Not(HasSubstr(site.address("/next"))));
}

TEST_F(TimeoutTest, DoesNotCountTheDelegatesTimeForARedirection) {
    const CapturedOutput errors(2);
    delegate->onAction = [this](const auto& address) {
        return address == site.address("/next") ? hold : allow;
    };
    load(site.address("/moved"), ampleTime);
    ASSERT_TRUE(waitUntil([this] { return delegate->heldActions.size() == 1; }));
    loadUntilTimeout(site.address("/never"), ampleTime);
    EXPECT_NE(webkit_web_view_is_loading(engine()), FALSE);
    delegate->heldActions[0](WKNavigationActionPolicy::allow);
    EXPECT_TRUE(waitForTitle("next"));
    EXPECT_THAT(errors.text(), Not(HasSubstr(site.address("/moved"))));
}

TEST_F(TimeoutTest, RestartsAfterADelegatesAnswer) {
    const CapturedOutput errors(2);
    delegate->onResponse = [](const auto&) { return hold; };
    load(site.address("/half"), ampleTime);
    ASSERT_TRUE(waitUntil([this] { return delegate->heldResponses.size() == 1; }));
    delegate->heldResponses[0](WKNavigationResponsePolicy::allow);
    EXPECT_TRUE(waitForLine(errors, "/half"));
}

TEST_F(TimeoutTest, AnInvalidTimeOutMeansTheDefault) {
    const CapturedOutput errors(2);
    for (const double interval : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        load(site.address("/next"), interval);
        EXPECT_TRUE(waitForTitle("next"));
    }
    EXPECT_THAT(errors.text(), Not(HasSubstr("Nothing came")));
}

}  // namespace

}  // namespace orvalo::testing
