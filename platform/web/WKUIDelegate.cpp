#include "platform/web/WKUIDelegate.h"

namespace orvalo {

std::shared_ptr<WKWebView> WKUIDelegate::webView(
    const std::shared_ptr<WKWebView>& /*webView*/,
    const std::shared_ptr<WKWebViewConfiguration>& /*createWebViewWith*/,
    const std::shared_ptr<WKNavigationAction>& /*for_*/,
    const std::shared_ptr<WKWindowFeatures>& /*windowFeatures*/) {
    return nullptr;
}

}  // namespace orvalo
