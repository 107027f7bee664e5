#include "platform/web/WKNavigationDelegate.h"

#include <utility>

namespace orvalo {

void WKNavigationDelegate::webView(const std::shared_ptr<WKWebView>& /*webView*/,
                                   const std::shared_ptr<WKNavigationAction>& /*decidePolicyFor*/,
                                   std::function<void(WKNavigationActionPolicy)> decisionHandler) {
    const auto handler = std::move(decisionHandler);
    handler(WKNavigationActionPolicy::allow);
}

void WKNavigationDelegate::webView(
    const std::shared_ptr<WKWebView>& /*webView*/,
    const std::shared_ptr<WKNavigationResponse>& /*decidePolicyFor*/,
    std::function<void(WKNavigationResponsePolicy)> decisionHandler) {
    const auto handler = std::move(decisionHandler);
    handler(WKNavigationResponsePolicy::allow);
}

}  // namespace orvalo
