#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace orvalo {

class WKNavigationAction;
class WKNavigationResponse;
class WKWebView;

enum class WKNavigationActionPolicy { cancel = 0, allow = 1 };

enum class WKNavigationResponsePolicy { cancel = 0, allow = 1 };

/// Decides about the navigations of a web view. All operations are called on the main thread, once
/// for each decision. The decision handler is to be called on the main thread, now or later; a
/// second call is a fatal error. Nothing is loaded before the call. After the view is destroyed, a
/// call does nothing.
class WKNavigationDelegate {
  public:
    virtual ~WKNavigationDelegate() = default;

    /// Called before a request is sent, for the page, its frames and every redirection. For a link
    /// to a new window it is called before the UI delegate. The default allows.
    virtual void webView(const std::shared_ptr<WKWebView>& /*webView*/,
                         const std::shared_ptr<WKNavigationAction>& /*decidePolicyFor*/,
                         std::function<void(WKNavigationActionPolicy)> decisionHandler) {
        const auto handler = std::move(decisionHandler);
        handler(WKNavigationActionPolicy::allow);
    }

    /// Called when the response's head has arrived. A refusal leaves the current page. The default
    /// allows.
    virtual void webView(const std::shared_ptr<WKWebView>& /*webView*/,
                         const std::shared_ptr<WKNavigationResponse>& /*decidePolicyFor*/,
                         std::function<void(WKNavigationResponsePolicy)> decisionHandler) {
        const auto handler = std::move(decisionHandler);
        handler(WKNavigationResponsePolicy::allow);
    }
};

}  // namespace orvalo
