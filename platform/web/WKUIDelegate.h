#pragma once

#include <memory>

#include "platform/foundation/NSObject.h"

namespace orvalo {

class WKNavigationAction;
class WKWebView;
class WKWebViewConfiguration;

/// The features that a page requests for a new window; none is supported.
class WKWindowFeatures : public NSObject {};

/// Answers a page's requests outside its view. Called on the main thread.
class WKUIDelegate {
  public:
    virtual ~WKUIDelegate() = default;

    /// A link or a script requests a new window. Returns the view for it, made with exactly the
    /// given configuration and kept alive by the delegate, or null: no window opens. A view made
    /// with another configuration is a fatal error. The default returns null.
    virtual std::shared_ptr<WKWebView> webView(
        const std::shared_ptr<WKWebView>& /*webView*/,
        const std::shared_ptr<WKWebViewConfiguration>& /*createWebViewWith*/,
        const std::shared_ptr<WKNavigationAction>& /*for_*/,
        const std::shared_ptr<WKWindowFeatures>& /*windowFeatures*/) {
        return nullptr;
    }
};

}  // namespace orvalo
