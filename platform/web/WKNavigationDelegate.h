#pragma once

#include <functional>
#include <memory>

#include "platform/web/WKNavigationPolicy.h"

namespace orvalo {

class WKNavigationAction;
class WKNavigationResponse;
class WKWebView;

/// Decides where a web view goes. All operations are called on the main thread, one call for each
/// decision. The decision handler is called on the main thread, now or later, once: a second call
/// is a fatal error. While it has not been called, nothing is loaded; after the view's end a call
/// does nothing.
class WKNavigationDelegate {
  public:
    virtual ~WKNavigationDelegate() = default;

    /// Before anything is asked of a server, in the page and in its frames, for every redirection,
    /// and for a link with a target of a new window, before the view's user-interface delegate is
    /// asked for that window. Allows, if not overridden.
    virtual void webView(const std::shared_ptr<WKWebView>& webView,
                         const std::shared_ptr<WKNavigationAction>& decidePolicyFor,
                         std::function<void(WKNavigationActionPolicy)> decisionHandler);

    /// When the answer's head has arrived. A refusal leaves the view where it is. Allows, if not
    /// overridden.
    virtual void webView(const std::shared_ptr<WKWebView>& webView,
                         const std::shared_ptr<WKNavigationResponse>& decidePolicyFor,
                         std::function<void(WKNavigationResponsePolicy)> decisionHandler);
};

}  // namespace orvalo
