#include <gtk/gtk.h>

#include "tests/platform/web/WebFixture.h"

namespace orvalo::testing {

namespace {

class LayoutClassTest : public WebFixture {};

TEST_F(LayoutClassTest, AWebViewOfALayoutIsAWKWebView) {
    UIView::provideClass("WebKitWebView");
    auto* builder = gtk_builder_new_from_string(
        "<interface><object class='GtkBox' id='box'><child>"
        "<object class='WebKitWebView' id='webView'/></child></object></interface>",
        -1);
    auto* widget = GTK_WIDGET(gtk_builder_get_object(builder, "webView"));
    const auto found = std::dynamic_pointer_cast<WKWebView>(UIView::of(widget));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->widget(), widget);
    EXPECT_EQ(UIView::of(widget), found);
    g_object_unref(builder);
}

}  // namespace

}  // namespace orvalo::testing
