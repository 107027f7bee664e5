#include "tests/platform/web/WebFixture.h"

#include "platform/foundation/GLibPointer.h"
#include "platform/web/WKWebViewConfiguration.h"
#include "tests/platform/web/Toolkit.h"

namespace orvalo::testing {

namespace {

std::string titleOf(WebKitWebView* engine) {
    const char* text = webkit_web_view_get_title(engine);
    return text == nullptr ? "" : text;
}

void storeResult(GObject* engine, GAsyncResult* result, gpointer text) {
    GError* error = nullptr;
    JSCValue* value =
        webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(engine), result, &error);
    if (value == nullptr) {
        *static_cast<std::optional<std::string>*>(text) = error->message;
        g_error_free(error);
        return;
    }
    *static_cast<std::optional<std::string>*>(text) = GText(jsc_value_to_string(value)).get();
    g_object_unref(value);
}

}  // namespace

WebFixture::WebFixture() {
    startToolkit();
    view = std::make_shared<WKWebView>(std::make_shared<WKWebViewConfiguration>());
    view->setUIDelegate(delegate);
    view->setNavigationDelegate(delegate);
    window_ = gtk_window_new();
    gtk_window_set_default_size(GTK_WINDOW(window_), 640, 480);
    gtk_window_set_child(GTK_WINDOW(window_), view->widget());
    gtk_window_present(GTK_WINDOW(window_));
}

WebFixture::~WebFixture() {
    releaseView();
}

void WebFixture::releaseView() {
    view.reset();
    if (window_ != nullptr) {
        gtk_window_destroy(GTK_WINDOW(window_));
        window_ = nullptr;
    }
}

void WebFixture::load(const std::string& address, double timeoutInterval) const {
    view->load({.url = URL::string(address), .timeoutInterval = timeoutInterval});
}

bool WebFixture::loadWholly(const std::string& address, const std::string& title) const {
    load(address);
    return waitForTitle(title);
}

bool WebFixture::waitForTitle(const std::string& title) const {
    return waitUntil([this, title] {
        return webkit_web_view_is_loading(engine()) == FALSE && this->title() == title;
    });
}

std::string WebFixture::evaluate(const std::string& script) const {
    std::optional<std::string> result;
    webkit_web_view_evaluate_javascript(engine(), script.c_str(), -1, nullptr, nullptr, nullptr,
                                        storeResult, &result);
    EXPECT_TRUE(waitUntil([&result] { return result.has_value(); }));
    return result.value_or("");
}

std::string WebFixture::title() const {
    return titleOf(engine());
}

void WebFixture::passTime(const Site& site, const std::string& path) {
    const auto other = std::make_shared<WKWebView>(std::make_shared<WKWebViewConfiguration>());
    auto* engine = WEBKIT_WEB_VIEW(other->widget());
    webkit_web_view_load_uri(engine, site.address(path).c_str());
    EXPECT_TRUE(waitUntil([engine] {
        return webkit_web_view_is_loading(engine) == FALSE && !titleOf(engine).empty();
    }));
}

void WebFixture::loadUntilTimeout(const std::string& address, double timeoutInterval) {
    const auto other = std::make_shared<WKWebView>(std::make_shared<WKWebViewConfiguration>());
    auto* engine = WEBKIT_WEB_VIEW(other->widget());
    other->load({.url = URL::string(address), .timeoutInterval = timeoutInterval});
    EXPECT_TRUE(waitUntil([engine] { return webkit_web_view_is_loading(engine) != FALSE; }));
    EXPECT_TRUE(waitUntil([engine] { return webkit_web_view_is_loading(engine) == FALSE; }));
}

}  // namespace orvalo::testing
