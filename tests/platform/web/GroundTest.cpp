#include <gtk/gtk.h>

#include "platform/web/WKWebViewConfiguration.h"
#include "tests/platform/web/WebFixture.h"

namespace orvalo::testing {

namespace {

class GroundTest : public WebFixture {
  protected:
    GroundTest() { preferDark(false); }
    ~GroundTest() override { preferDark(false); }

    static void preferDark(bool isDark) {
        g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme",
                     static_cast<gboolean>(isDark), nullptr);
    }
    /// The ground of a new view.
    static GdkRGBA ground() {
        const WKWebView other(std::make_shared<WKWebViewConfiguration>());
        GdkRGBA color;
        webkit_web_view_get_background_color(WEBKIT_WEB_VIEW(other.widget()), &color);
        return color;
    }
};

TEST_F(GroundTest, AViewIsInvisibleUntilAPageArrives) {
    const Site site{
        {{"/never", {.manner = Page::Manner::never}}, {"/page", titled("page", "page")}}};
    load(site.address("/never"));
    ASSERT_TRUE(pollUntil([&] { return !site.requested().empty(); }));
    EXPECT_EQ(gtk_widget_get_opacity(view->widget()), 0);
    ASSERT_TRUE(loadWholly(site.address("/page"), "page"));
    EXPECT_EQ(gtk_widget_get_opacity(view->widget()), 1);
}

TEST_F(GroundTest, TheGroundIsOpaqueAndLightOrDarkAsWindowsAre) {
    const auto light = ground();
    preferDark(true);
    const auto dark = ground();
    EXPECT_EQ(light.alpha, 1);
    EXPECT_EQ(dark.alpha, 1);
    EXPECT_GT(light.green, 0.9);
    EXPECT_LT(light.green, 1);  // White is not the windows' colour.
    EXPECT_LT(dark.green, 0.3);
}

}  // namespace

}  // namespace orvalo::testing
