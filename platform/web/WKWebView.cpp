#include "platform/web/WKWebView.h"

#include <string_view>
#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/FatalError.h"
#include "platform/ui/MainThread.h"
#include "platform/web/LoadWatch.h"
#include "platform/web/PolicyDecision.h"
#include "platform/web/WKNavigation.h"
#include "platform/web/WKNavigationDelegate.h"
#include "platform/web/WKUIDelegate.h"
#include "platform/web/WKWebViewConfiguration.h"
#include "platform/web/WebAddress.h"
#include "platform/web/WebKit.h"
#include "platform/web/WebSandbox.h"
#include "platform/web/WebTrouble.h"

namespace orvalo {

namespace {

GtkWidget* newWidget(const std::shared_ptr<WKWebView>& opener) {
    requireMainThread("WKWebView");
    // A page opened by another page shares its process.
    return GTK_WIDGET(g_object_new(lateWebKit(webkit_web_view_get_type)(), "related-view",
                                   opener ? opener->widget() : nullptr, nullptr));
}

/// What is seen until a page has been drawn: the colour of windows, light or dark.
GdkRGBA groundOf(GtkWidget* widget) {
    GdkRGBA color{1, 1, 1, 1};
    gtk_style_context_lookup_color(gtk_widget_get_style_context(widget), "theme_bg_color", &color);
    // With a translucent ground and without OpenGL, WebKitGTK 2.54 erases all of a page but what it
    // draws anew, such as the scrollbar.
    color.alpha = 1;
    return color;
}

std::shared_ptr<URLResponse> responseOf(WebKitURIResponse* response) {
    auto url = webAddress(lateWebKit(webkit_uri_response_get_uri)(response));
    if (const auto status = lateWebKit(webkit_uri_response_get_status_code)(response);
        status != 0) {
        return std::make_shared<HTTPURLResponse>(std::move(url), status);
    }
    return std::make_shared<URLResponse>(std::move(url));
}

URLRequest requestOf(WebKitNavigationAction* action) {
    auto* request = lateWebKit(webkit_navigation_action_get_request)(action);
    return {.url = webAddress(lateWebKit(webkit_uri_request_get_uri)(request))};
}

/// Whether pages can be loaded. Logs the reason if not.
bool canLoad() {
    const auto problem = sandboxProblem();
    if (problem) {
        g_warning("No web page can be shown, because the sandbox cannot be created: %s",
                  problem->c_str());
    }
    return !problem;
}

/// Whether the engine loads a part of its own document viewer, which no page requested.
bool isViewerPart(WebKitResponsePolicyDecision* decision) {
    auto* response = lateWebKit(webkit_response_policy_decision_get_response)(decision);
    constexpr std::string_view scheme = "webkit-pdfjs-viewer:";
    return lateWebKit(webkit_response_policy_decision_is_main_frame_main_resource)(decision) ==
               FALSE &&
           std::string_view(lateWebKit(webkit_uri_response_get_uri)(response)).starts_with(scheme);
}

}  // namespace

struct WKWebView::Signals {
    static gboolean decidePolicy(WebKitWebView* /*engine*/, WebKitPolicyDecision* decision,
                                 WebKitPolicyDecisionType type, gpointer view) {
        auto* self = static_cast<WKWebView*>(view);
        if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
            self->decideResponse(decision);
        } else {
            auto* action = lateWebKit(webkit_navigation_policy_decision_get_navigation_action)(
                reinterpret_cast<WebKitNavigationPolicyDecision*>(decision));
            self->decideAction(decision, requestOf(action),
                               lateWebKit(webkit_navigation_action_is_redirect)(action) != FALSE);
        }
        return TRUE;
    }

    static void loadChanged(WebKitWebView* engine, WebKitLoadEvent event, gpointer /*view*/) {
        if (event == WEBKIT_LOAD_COMMITTED) {
            gtk_widget_set_opacity(GTK_WIDGET(engine), 1);
        }
    }

    static gboolean loadFailed(WebKitWebView* /*engine*/, WebKitLoadEvent /*event*/,
                               const char* address, const GError* error, gpointer view) {
        if (!isWanted(error)) {
            static_cast<WKWebView*>(view)->showInstalled(address);
        }
        return FALSE;
    }

    static GtkWidget* create(WebKitWebView* /*engine*/, WebKitNavigationAction* action,
                             gpointer view) {
        const auto created = static_cast<WKWebView*>(view)->createWebView(action);
        // The engine takes no reference: a view that the delegate does not keep would be destroyed.
        return created.use_count() > 1 ? created->widget() : nullptr;
    }
};

WKWebView::WKWebView(GtkWidget* widget)
    : UIView(widget), configuration_(std::make_shared<WKWebViewConfiguration>()) {
    connect();
}

WKWebView::WKWebView(const std::shared_ptr<WKWebViewConfiguration>& configuration)
    : UIView(newWidget(configuration->opener_.lock())), configuration_(configuration) {
    connect();
}

void WKWebView::connect() {
    // Scripts may request windows; the delegate decides.
    lateWebKit(webkit_settings_set_javascript_can_open_windows_automatically)(
        lateWebKit(webkit_web_view_get_settings)(engine()), TRUE);
    gtk_widget_set_opacity(widget(), 0);
    const auto ground = groundOf(widget());
    lateWebKit(webkit_web_view_set_background_color)(engine(), &ground);
    g_signal_connect(engine(), "decide-policy", G_CALLBACK(Signals::decidePolicy), this);
    g_signal_connect(engine(), "create", G_CALLBACK(Signals::create), this);
    g_signal_connect(engine(), "load-changed", G_CALLBACK(Signals::loadChanged), this);
    g_signal_connect(engine(), "load-failed", G_CALLBACK(Signals::loadFailed), this);
    watch_ = std::make_unique<LoadWatch>(engine());
    watch_->onStopped = [this](const auto& address) { showInstalled(address); };
    reportTrouble(engine());
}

WKWebView::~WKWebView() {
    g_signal_handlers_disconnect_by_data(engine(), this);
    watch_.reset();
    // An open decision would keep the engine's view alive.
    for (const auto& decision : decisions_) {
        decision->end();
    }
    lateWebKit(webkit_web_view_stop_loading)(engine());
}

WebKitWebView* WKWebView::engine() const {
    return reinterpret_cast<WebKitWebView*>(widget());
}

void WKWebView::registerClass() {
    UIView::setLateClass("WebKitWebView", [] {
        UIView::setClass(lateWebKit(webkit_web_view_get_type)(),
                         [](GtkWidget* widget) { return std::make_shared<WKWebView>(widget); });
    });
}

std::shared_ptr<WKUIDelegate> WKWebView::uiDelegate() const {
    requireMainThread("WKWebView.uiDelegate");
    return uiDelegate_.lock();
}

void WKWebView::setUIDelegate(const std::shared_ptr<WKUIDelegate>& delegate) {
    requireMainThread("WKWebView.uiDelegate");
    uiDelegate_ = delegate;
}

std::shared_ptr<WKNavigationDelegate> WKWebView::navigationDelegate() const {
    requireMainThread("WKWebView.navigationDelegate");
    return navigationDelegate_.lock();
}

void WKWebView::setNavigationDelegate(const std::shared_ptr<WKNavigationDelegate>& delegate) {
    requireMainThread("WKWebView.navigationDelegate");
    navigationDelegate_ = delegate;
}

void WKWebView::setInstalledSite(InstalledSite site) {
    requireMainThread("WKWebView.setInstalledSite");
    installedSite_ = std::move(site);
}

void WKWebView::showInstalledSite() {
    requireMainThread("WKWebView.showInstalledSite");
    watch_->stopEmptyLoad();
}

std::shared_ptr<WKNavigation> WKWebView::load(const URLRequest& request) {
    requireMainThread("WKWebView.load");
    if (request.url) {
        if (canLoad()) {
            installed_.clear();
            watch_->setInterval(request.timeout());
            lateWebKit(webkit_web_view_load_uri)(engine(), request.url->absoluteString().c_str());
        }
    } else {
        // The engine has no loads without an address. Asynchronous, like its other loads.
        DispatchQueue::main()->async([view = weak(this), request] {
            if (const auto self = view.lock()) {
                self->decideAction(nullptr, request, false);
            }
        });
    }
    return std::make_shared<WKNavigation>();
}

std::shared_ptr<WKNavigation> WKWebView::loadHTMLString(const std::string& string,
                                                        const std::optional<URL>& baseURL) {
    requireMainThread("WKWebView.loadHTMLString");
    if (canLoad()) {
        watch_->setInterval(URLRequest::defaultTimeout);
        lateWebKit(webkit_web_view_load_html)(
            engine(), string.c_str(), baseURL ? baseURL->absoluteString().c_str() : nullptr);
    }
    return std::make_shared<WKNavigation>();
}

void WKWebView::decideAction(WebKitPolicyDecision* decision, const URLRequest& request,
                             bool halts) {
    const auto self = shared(this);
    const auto settle = open(
        decision, "The decision handler of webView(decidePolicyFor: WKNavigationAction)", halts);
    const auto answer = [settle, request, view = weak(this)](bool isAllowed) {
        const auto still = view.lock();
        if (still && isAllowed && request.url &&
            still->isBetweenInstalled(request.url->absoluteString())) {
            settle(false);
            still->showInstalled(request.url->absoluteString());
            return;
        }
        settle(isAllowed);
        if (still && isAllowed && request.url) {
            still->watch_->announce(request.url->absoluteString());
        }
    };
    if (const auto delegate = navigationDelegate_.lock()) {
        delegate->webView(self, std::make_shared<WKNavigationAction>(request),
                          [answer](WKNavigationActionPolicy policy) {
                              answer(policy == WKNavigationActionPolicy::allow);
                          });
    } else {
        answer(true);
    }
}

void WKWebView::showInstalled(const std::string& wanted) {
    if (const auto page = installedSite_ ? installedSite_->page(wanted) : std::nullopt) {
        installed_ = wanted;
        watch_->setInterval(URLRequest::defaultTimeout);
        // The engine does not ask whether it may show such a page.
        lateWebKit(webkit_web_view_load_alternate_html)(engine(), page->c_str(), wanted.c_str(),
                                                        wanted.c_str());
    }
}

bool WKWebView::isBetweenInstalled(const std::string& address) const {
    // A link to a place in the same page needs no load.
    return !installed_.empty() && withoutFragment(address) != withoutFragment(installed_) &&
           installedSite_->page(address);
}

void WKWebView::decideResponse(WebKitPolicyDecision* decision) {
    const auto self = shared(this);
    auto* response = reinterpret_cast<WebKitResponsePolicyDecision*>(decision);
    const bool halts =
        lateWebKit(webkit_response_policy_decision_is_main_frame_main_resource)(response) != FALSE;
    const auto answer = open(
        decision, "The decision handler of webView(decidePolicyFor: WKNavigationResponse)", halts);
    const auto delegate = navigationDelegate_.lock();
    if (delegate && !isViewerPart(response)) {
        delegate->webView(self,
                          std::make_shared<WKNavigationResponse>(responseOf(
                              lateWebKit(webkit_response_policy_decision_get_response)(response))),
                          [answer](WKNavigationResponsePolicy policy) {
                              answer(policy == WKNavigationResponsePolicy::allow);
                          });
    } else {
        answer(true);
    }
}

std::shared_ptr<WKWebView> WKWebView::createWebView(WebKitNavigationAction* action) {
    const auto self = shared(this);
    const auto delegate = uiDelegate_.lock();
    if (!delegate) {
        return nullptr;
    }
    const std::shared_ptr<WKWebViewConfiguration> configuration(
        new WKWebViewConfiguration(weak(this)));
    auto view = delegate->webView(self, configuration,
                                  std::make_shared<WKNavigationAction>(requestOf(action)),
                                  std::make_shared<WKWindowFeatures>());
    if (view && view->configuration_ != configuration) {
        fatalError(
            "webView(createWebViewWith:) gave a view that was made without the given "
            "configuration.");
    }
    return view;
}

std::function<void(bool)> WKWebView::open(WebKitPolicyDecision* decision,
                                          const std::string& handler, bool halts) {
    std::erase_if(decisions_, [](const auto& known) { return !known->isOpen(); });
    const auto opened =
        decisions_.emplace_back(std::make_shared<PolicyDecision>(decision, handler));
    if (halts) {
        watch_->pause();
    }
    return [opened, handler, halts, view = weak(this)](bool isAllowed) {
        requireMainThread(handler);
        if (const auto self = view.lock(); self && halts) {
            self->watch_->resume();
        }
        opened->answer(isAllowed);
    };
}

}  // namespace orvalo
