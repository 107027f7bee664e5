#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "platform/plugin-ui/x11/X11Connection.h"
#include "platform/plugin-ui/x11/X11Container.h"
#include "tests/platform/plugin-ui/x11/Pointer.h"
#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/platform/plugin-ui/x11/Toplevel.h"
#include "tests/programs/effect-service/ForeignWindow.h"
#include "tests/programs/effect-service/HostedEffect.h"
#include "tests/programs/effect-service/effects/UIDeed.h"
#include "tests/testing/WaitUntil.h"
#include "tests/testing/XServer.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::HasSubstr;
using zoo::UIDeed;

constexpr std::uint32_t kDeedPort = 2;
constexpr unsigned kColor = 0x336699;
constexpr X11Rect kArea{50, 40, 400, 300};
// kArea in the toplevel, which is at (100, 100).
constexpr X11Rect kOnScreen{150, 140, 400, 300};

/// An effect's UI, whose host is this program.
class ServicePluginUI : public ::testing::Test {
  protected:
    ServicePluginUI() { effect_.emplace(ORVALO_SERVICE_EFFECTS, "urn:orvalo:service:window"); }

    void make(UIDeed deed = UIDeed::none) {
        effect_->request.controls = {{kDeedPort, static_cast<float>(deed)}};
        effect_->mustInstantiate();
    }
    /// Returns the error; "" for none.
    std::string tryToOpen(unsigned long window, const std::string& display) {
        service().send(bridge::OpenPluginUI{++number_, display, window, 1.0});
        return service().answer(number_);
    }
    void open() {
        container_ = std::make_unique<X11Container>(connection_, toplevel_.window(), kArea.size());
        ASSERT_EQ(tryToOpen(container_->window(), display_), "");
        const auto opened = service().takePassed<bridge::PluginUIOpened>();
        ASSERT_EQ(opened.size(), 1U);
        window_ = opened[0].window;
        container_->adopt(window_);
        container_->place(kArea, kArea);
        container_->setVisible(true);
        service().send(bridge::ShowPluginUI{true});
    }
    void close() {
        container_->release();
        service().send(bridge::ClosePluginUI{++number_});
        ASSERT_EQ(service().answer(number_), "");
    }
    void ping() {
        service().send(bridge::Ping{++number_});
        ASSERT_EQ(service().answer(number_), "");
    }
    ServiceProgram& service() { return effect_->service; }
    float control(const std::string& symbol) const { return effect_->control(symbol); }

    Toplevel toplevel_;
    const std::string display_ = g_getenv("DISPLAY");
    const std::shared_ptr<X11Connection> connection_ = X11Connection::open(display_);
    std::unique_ptr<X11Container> container_;
    std::optional<HostedEffect> effect_;
    unsigned long window_ = 0;
    std::uint32_t number_ = 0;
};

TEST_F(ServicePluginUI, IsInTheHostsWindowUntilItIsClosed) {
    make();
    open();
    EXPECT_TRUE(waitForRectangle(window_, kOnScreen));
    EXPECT_TRUE(waitForColor(200, 200, kColor));
    close();
    EXPECT_EQ(rectangleOf(window_), X11Rect());
    EXPECT_TRUE(waitForColor(200, 200, 0x202020));
    const auto updates = control("updates");
    ping();
    EXPECT_EQ(control("updates"), updates);
    open();
    EXPECT_TRUE(waitForRectangle(window_, kOnScreen));
    EXPECT_EQ(service().standardError(), "");
}

TEST_F(ServicePluginUI, SetsAControlInTheSharedMemory) {
    make();
    open();
    ASSERT_TRUE(waitForColor(200, 200, kColor));
    click(150 + 120, 200);
    EXPECT_TRUE(pollUntil([this] { return control("level") == 120.0F; }));
}

TEST_F(ServicePluginUI, ReceivesItsSize) {
    make();
    open();
    service().send(bridge::ResizePluginUI{345, 210});
    EXPECT_TRUE(pollUntil([this] { return control("width") == 345.0F; }));
}

TEST_F(ServicePluginUI, IsUpdatedAlsoWhileItIsHidden) {
    make();
    open();
    service().send(bridge::ShowPluginUI{false});
    ping();
    const auto updates = control("updates");
    EXPECT_TRUE(pollUntil([=, this] { return control("updates") >= updates + 2; }));
}

TEST_F(ServicePluginUI, RequestsASize) {
    make(UIDeed::requestSize);
    open();
    const auto wish = service().await<bridge::PluginUIResizeRequest>();
    EXPECT_EQ(wish.width, 432);
    EXPECT_EQ(wish.height, 321);
}

TEST_F(ServicePluginUI, ReportsThatItHasClosedItselfAndIsNotUpdatedAnyMore) {
    make(UIDeed::close);
    open();
    EXPECT_EQ(service().await<bridge::PluginUIClosed>().reason, "it has closed itself");
    EXPECT_EQ(control("updates"), 1.0F);
    service().send(bridge::ShowPluginUI{false});
    service().send(bridge::ShowPluginUI{true});
    service().send(bridge::ResizePluginUI{10, 10});
    ping();
    EXPECT_EQ(control("updates"), 1.0F);
    EXPECT_EQ(control("width"), 0.0F);
    close();
}

TEST_F(ServicePluginUI, IsCleanedUpWhenItsUpdateReturns) {
    make(UIDeed::nest);
    open();
    // After this message the UI is inside its update.
    service().await<bridge::PluginUIResizeRequest>();
    close();
    EXPECT_TRUE(isThere(window_));
    sendMessage(window_);
    EXPECT_TRUE(pollUntil([this] { return !isThere(window_); }));
    ping();
    // The host closed the UI first, so the UI's own closing is not reported.
    EXPECT_TRUE(service().takePassed<bridge::PluginUIClosed>().empty());
    open();
    EXPECT_TRUE(waitForRectangle(window_, kOnScreen));
    EXPECT_EQ(service().standardError(), "");
}

TEST_F(ServicePluginUI, ReportsThatItIsOutdatedWhenItsInstanceIsReplaced) {
    make();
    open();
    ASSERT_TRUE(waitForRectangle(window_, kOnScreen));
    service().send(bridge::Prepare{100, 44100.0});
    EXPECT_EQ(service().answer(100), "");
    service().await<bridge::PluginUIOutdated>();
    close();
    open();
    EXPECT_TRUE(waitForRectangle(window_, kOnScreen));
    ASSERT_TRUE(waitForColor(200, 200, kColor));
    click(150 + 30, 200);
    EXPECT_TRUE(pollUntil([this] { return control("level") == 30.0F; }));
}

TEST_F(ServicePluginUI, SurvivesItsXErrorsAndLogsThem) {
    make(UIDeed::badWindow);
    open();
    ASSERT_TRUE(pollUntil([this] { return control("updates") > 2.0F; }));
    EXPECT_THAT(service().standardError(),
                HasSubstr("made an X11 error (BadWindow (invalid Window parameter), request 8.0); "
                          "ignored."));
    ping();
}

TEST_F(ServicePluginUI, SurvivesTheLossOfTheHostsWindow) {
    make();
    open();
    ASSERT_TRUE(waitForRectangle(window_, kOnScreen));
    toplevel_.destroy();
    ping();
    close();
    ping();
}

TEST_F(ServicePluginUI, ReportsWhyItCannotBeOpened) {
    make();
    EXPECT_THAT(tryToOpen(toplevel_.window(), ":4000"),
                HasSubstr("the X server \":4000\" cannot be reached"));
    EXPECT_THAT(tryToOpen(0x7ffffff, display_), HasSubstr("the window that it belongs in is gone"));
    open();
    EXPECT_TRUE(waitForRectangle(window_, kOnScreen));
}

TEST_F(ServicePluginUI, OpensAlsoAfterTheXServerOfItsEnvironmentEnded) {
    std::optional<XServer> server(std::in_place);
    effect_.emplace(ORVALO_SERVICE_EFFECTS, "urn:orvalo:service:window");
    make();
    service().send(bridge::LoadPluginUI{++number_});
    ASSERT_EQ(service().answer(number_), "");
    server.reset();
    g_setenv("DISPLAY", display_.c_str(), TRUE);
    effect_->renderQuantum(64);
    ping();
    open();
    EXPECT_TRUE(waitForRectangle(window_, kOnScreen));
}

TEST_F(ServicePluginUI, ReportsThatAnEffectHasNoUI) {
    effect_.emplace(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect_->mustInstantiate();
    EXPECT_THAT(tryToOpen(toplevel_.window(), display_), HasSubstr("urn:orvalo:zoo:probe"));
    service().send(bridge::ClosePluginUI{77});
    EXPECT_EQ(service().answer(77), "");
}

TEST_F(ServicePluginUI, EndsTheServiceWhenItExits) {
    make(UIDeed::leave);
    open();
    EXPECT_EQ(service().waitForEnd(), 7);
}

TEST_F(ServicePluginUI, OfOrvaloIsDrawn) {
    effect_.emplace(ORVALO_STAGE "/lib/lv2", "urn:tessaly:orvalo");
    effect_->mustInstantiate();
    open();
    EXPECT_TRUE(pollUntil([] { return countColors(kOnScreen) > 10; }));
    EXPECT_EQ(service().standardError(), "");
}

}  // namespace
