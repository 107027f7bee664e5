#pragma once

#include <memory>

namespace orvalo {

class WKNavigationAction;
class WKWebView;
class WKWebViewConfiguration;
class WKWindowFeatures;

/// Gives a web view's page what lies outside the view. Called on the main thread.
class WKUIDelegate {
  public:
    virtual ~WKUIDelegate() = default;

    /// A link or a script asks for a new window: the view for it, made with exactly that
    /// configuration and kept by the delegate, or an absent one, and nothing opens. A view made in
    /// another way is a fatal error. Absent, if not overridden.
    virtual std::shared_ptr<WKWebView> webView(
        const std::shared_ptr<WKWebView>& webView,
        const std::shared_ptr<WKWebViewConfiguration>& createWebViewWith,
        const std::shared_ptr<WKNavigationAction>& for_,
        const std::shared_ptr<WKWindowFeatures>& windowFeatures);
};

}  // namespace orvalo
