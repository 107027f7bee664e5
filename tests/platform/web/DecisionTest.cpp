#include <gmock/gmock.h>

#include <thread>

#include "tests/platform/web/WebFixture.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {

namespace {

using ::testing::ElementsAre;
using enum RecordingDelegate::Answer;

/// Counts the engine's live decisions of all views.
class AliveDecisions {
  public:
    AliveDecisions()
        : signal_(g_signal_lookup("decide-policy", WEBKIT_TYPE_WEB_VIEW)),
          hook_(g_signal_add_emission_hook(signal_, 0, emitted, this, nullptr)) {}
    ~AliveDecisions() { g_signal_remove_emission_hook(signal_, hook_); }
    AliveDecisions(const AliveDecisions&) = delete;
    AliveDecisions& operator=(const AliveDecisions&) = delete;

    int seen = 0;
    int alive = 0;

  private:
    static gboolean emitted(GSignalInvocationHint* /*hint*/, guint /*count*/,
                            const GValue* parameters, gpointer counter) {
        auto* self = static_cast<AliveDecisions*>(counter);
        ++self->seen;
        ++self->alive;
        g_object_weak_ref(
            static_cast<GObject*>(g_value_get_object(&parameters[1])),
            [](gpointer data, GObject*) { --static_cast<AliveDecisions*>(data)->alive; }, self);
        return TRUE;
    }

    guint signal_;
    gulong hook_;
};

class DecisionTest : public WebFixture {
  protected:
    const Site site{{{"/", titled("start")}, {"/page", titled("page")}, {"/next", titled("next")}}};

    void holdActions() const {
        delegate->onAction = [](const auto&) { return hold; };
    }
    void holdResponses() const {
        delegate->onResponse = [](const auto&) { return hold; };
    }
    bool waitForHeld(std::size_t actions, std::size_t responses) const {
        return waitUntil([this, actions, responses] {
            return delegate->heldActions.size() == actions &&
                   delegate->heldResponses.size() == responses;
        });
    }
};

TEST_F(DecisionTest, AnActionLoadsNothingUntilItIsAllowed) {
    loadWholly(site.address("/"), "start");
    holdActions();
    load(site.address("/page"));
    ASSERT_TRUE(waitForHeld(1, 0));
    passTime(site, "/next");
    EXPECT_EQ(title(), "start");
    EXPECT_THAT(site.requested(), ElementsAre("/", "/next"));

    delegate->heldActions[0](WKNavigationActionPolicy::allow);
    EXPECT_TRUE(waitForTitle("page"));
    EXPECT_THAT(site.requested(), ElementsAre("/", "/next", "/page"));
}

TEST_F(DecisionTest, AnActionCanBeRefusedLater) {
    loadWholly(site.address("/"), "start");
    holdActions();
    load(site.address("/page"));
    ASSERT_TRUE(waitForHeld(1, 0));
    delegate->heldActions[0](WKNavigationActionPolicy::cancel);
    passTime(site, "/next");
    EXPECT_EQ(title(), "start");
    EXPECT_THAT(site.requested(), ElementsAre("/", "/next"));
}

TEST_F(DecisionTest, AResponseShowsNothingUntilItIsAllowed) {
    loadWholly(site.address("/"), "start");
    holdResponses();
    load(site.address("/page"));
    ASSERT_TRUE(waitForHeld(0, 1));
    passTime(site, "/next");
    EXPECT_EQ(title(), "start");

    delegate->heldResponses[0](WKNavigationResponsePolicy::allow);
    EXPECT_TRUE(waitForTitle("page"));
}

TEST_F(DecisionTest, AResponseCanBeRefusedLater) {
    loadWholly(site.address("/"), "start");
    holdResponses();
    load(site.address("/page"));
    ASSERT_TRUE(waitForHeld(0, 1));
    delegate->heldResponses[0](WKNavigationResponsePolicy::cancel);
    EXPECT_TRUE(waitForTitle("start"));
}

TEST_F(DecisionTest, AnOpenDecisionDoesNotBlockTheNextLoad) {
    delegate->onAction = [this](const auto& address) {
        return address == site.address("/page") ? hold : allow;
    };
    load(site.address("/page"));
    ASSERT_TRUE(waitForHeld(1, 0));
    EXPECT_TRUE(loadWholly(site.address("/next"), "next"));
    delegate->heldActions[0](WKNavigationActionPolicy::allow);
    passTime(site, "/");
    EXPECT_EQ(title(), "next");
    EXPECT_THAT(site.requested(), ElementsAre("/next", "/"));
}

TEST_F(DecisionTest, OpenDecisionsAreRefusedWithTheirView) {
    AliveDecisions decisions;
    delegate->onAction = [this](const auto& address) {
        return address == site.address("/page") ? hold : allow;
    };
    holdResponses();
    load(site.address("/page"));
    ASSERT_TRUE(waitForHeld(1, 0));
    load(site.address("/next"));
    ASSERT_TRUE(waitForHeld(1, 1));
    EXPECT_EQ(decisions.seen, 3);
    EXPECT_EQ(decisions.alive, 2);

    const std::weak_ptr weak = view;
    auto* widget = view->widget();
    g_object_add_weak_pointer(G_OBJECT(widget), reinterpret_cast<gpointer*>(&widget));
    releaseView();
    EXPECT_TRUE(weak.expired());
    EXPECT_TRUE(waitUntil([&widget] { return widget == nullptr; }));
    EXPECT_EQ(decisions.alive, 0);

    delegate->heldActions[0](WKNavigationActionPolicy::allow);
    delegate->heldResponses[0](WKNavigationResponsePolicy::allow);
    delegate->heldResponses[0](WKNavigationResponsePolicy::allow);
    passTime(site, "/");
    EXPECT_THAT(site.requested(), ElementsAre("/next", "/"));
}

TEST_F(DecisionTest, ADroppedHandlerLeavesTheDecisionOpen) {
    AliveDecisions decisions;
    holdActions();
    load(site.address("/page"));
    ASSERT_TRUE(waitForHeld(1, 0));
    delegate->heldActions.clear();
    passTime(site, "/");
    EXPECT_EQ(title(), "");
    EXPECT_THAT(site.requested(), ElementsAre("/"));
    EXPECT_EQ(decisions.alive, 1);
    releaseView();
    EXPECT_EQ(decisions.alive, 0);
    passTime(site, "/");
    EXPECT_THAT(site.requested(), ElementsAre("/", "/"));
}

TEST_F(DecisionTest, AnsweredDecisionsAreReleased) {
    AliveDecisions decisions;
    loadWholly(site.address("/"), "start");
    EXPECT_EQ(decisions.seen, 2);
    EXPECT_EQ(decisions.alive, 0);
}

TEST_F(DecisionTest, ADelegateMayDestroyTheView) {
    AliveDecisions decisions;
    delegate->onResponse = [this](const auto&) {
        releaseView();
        return allow;
    };
    load(site.address("/page"));
    EXPECT_TRUE(waitUntil([this] { return view == nullptr; }));
    passTime(site, "/");
    EXPECT_EQ(decisions.alive, 0);
}

TEST_F(DecisionTest, ARequestWithoutAnAddressReachesTheDelegate) {
    holdActions();
    EXPECT_NE(view->load({.url = std::nullopt}), nullptr);
    ASSERT_TRUE(waitForHeld(1, 0));
    delegate->heldActions[0](WKNavigationActionPolicy::allow);
    passTime(site, "/");
    EXPECT_THAT(delegate->calls, ElementsAre("action nil"));
    EXPECT_EQ(webkit_web_view_is_loading(engine()), FALSE);
}

TEST_F(DecisionTest, EveryLoadIsANewNavigation) {
    const auto first = view->load({.url = URL::string(site.address("/"))});
    const auto second = view->loadHTMLString("<title>text</title>", std::nullopt);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_NE(first, second);
}

TEST_F(DecisionTest, ASecondAnswerIsFatal) {
    EXPECT_DEATH(
        {
            holdActions();
            load(site.address("/page"));
            waitForHeld(1, 0);
            delegate->heldActions[0](WKNavigationActionPolicy::cancel);
            delegate->heldActions[0](WKNavigationActionPolicy::cancel);
        },
        "Fatal error: The decision handler of webView\\(decidePolicyFor: WKNavigationAction\\) was "
        "called more than once\\.");
    EXPECT_DEATH(
        {
            holdResponses();
            load(site.address("/page"));
            waitForHeld(0, 1);
            delegate->heldResponses[0](WKNavigationResponsePolicy::allow);
            delegate->heldResponses[0](WKNavigationResponsePolicy::cancel);
        },
        "Fatal error: The decision handler of webView\\(decidePolicyFor: WKNavigationResponse\\) "
        "was called more than once\\.");
}

TEST_F(DecisionTest, AnAnswerFromAnotherThreadIsFatal) {
    EXPECT_DEATH(
        {
            holdActions();
            load(site.address("/page"));
            waitForHeld(1, 0);
            std::thread([this] {
                delegate->heldActions[0](WKNavigationActionPolicy::allow);
            }).join();
        },
        "Fatal error: The decision handler of webView\\(decidePolicyFor: WKNavigationAction\\) was "
        "called from a thread other than the main thread\\.");
}

}  // namespace

}  // namespace orvalo::testing
