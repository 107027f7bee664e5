#include "tests/platform/web/RecordingDelegate.h"

#include <utility>

#include "platform/foundation/URLResponse.h"
#include "platform/web/WKNavigation.h"

namespace orvalo::testing {

namespace {

std::string text(const std::optional<URL>& url) {
    return url ? url->absoluteString() : "nil";
}

template <typename Policy>
void settle(const std::function<RecordingDelegate::Answer(const std::string&)>& rule,
            const std::string& address, std::function<void(Policy)> handler,
            std::vector<std::function<void(Policy)>>& held) {
    switch (rule ? rule(address) : RecordingDelegate::Answer::allow) {
        case RecordingDelegate::Answer::allow:
            handler(Policy::allow);
            break;
        case RecordingDelegate::Answer::cancel:
            handler(Policy::cancel);
            break;
        case RecordingDelegate::Answer::hold:
            held.push_back(std::move(handler));
            break;
    }
}

}  // namespace

void RecordingDelegate::webView(const std::shared_ptr<WKWebView>& /*webView*/,
                                const std::shared_ptr<WKNavigationAction>& decidePolicyFor,
                                std::function<void(WKNavigationActionPolicy)> decisionHandler) {
    const auto address = text(decidePolicyFor->request.url);
    calls.push_back("action " + address);
    settle(onAction, address, std::move(decisionHandler), heldActions);
}

void RecordingDelegate::webView(const std::shared_ptr<WKWebView>& /*webView*/,
                                const std::shared_ptr<WKNavigationResponse>& decidePolicyFor,
                                std::function<void(WKNavigationResponsePolicy)> decisionHandler) {
    const auto http = std::dynamic_pointer_cast<HTTPURLResponse>(decidePolicyFor->response);
    statuses.push_back(http ? static_cast<int>(http->statusCode) : 0);
    const auto address = text(decidePolicyFor->response->url);
    calls.push_back("response " + address);
    settle(onResponse, address, std::move(decisionHandler), heldResponses);
}

std::shared_ptr<WKWebView> RecordingDelegate::webView(
    const std::shared_ptr<WKWebView>& /*webView*/,
    const std::shared_ptr<WKWebViewConfiguration>& createWebViewWith,
    const std::shared_ptr<WKNavigationAction>& for_,
    const std::shared_ptr<WKWindowFeatures>& /*windowFeatures*/) {
    calls.push_back("window " + text(for_->request.url));
    return onWindow ? onWindow(createWebViewWith) : nullptr;
}

}  // namespace orvalo::testing
