#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/foundation/NSObject.h"
#include "platform/web/WKNavigationDelegate.h"
#include "platform/web/WKUIDelegate.h"

namespace orvalo::testing {

/// Records its calls and answers as configured.
class RecordingDelegate : public NSObject, public WKNavigationDelegate, public WKUIDelegate {
  public:
    enum class Answer { allow, cancel, hold };

    /// "action <address>", "response <address>" or "window <address>", in the order of the calls;
    /// "nil" for an absent address.
    std::vector<std::string> calls;
    /// The answers by address. Other addresses are allowed.
    std::function<Answer(const std::string& address)> onAction;
    std::function<Answer(const std::string& address)> onResponse;
    /// Creates the view for a new window; empty: no window opens.
    std::function<std::shared_ptr<WKWebView>(const std::shared_ptr<WKWebViewConfiguration>&)>
        onWindow;
    /// The handlers of open decisions.
    std::vector<std::function<void(WKNavigationActionPolicy)>> heldActions;
    std::vector<std::function<void(WKNavigationResponsePolicy)>> heldResponses;
    /// The statuses of the responses, 0 without a web server.
    std::vector<int> statuses;

    void webView(const std::shared_ptr<WKWebView>& webView,
                 const std::shared_ptr<WKNavigationAction>& decidePolicyFor,
                 std::function<void(WKNavigationActionPolicy)> decisionHandler) override;
    void webView(const std::shared_ptr<WKWebView>& webView,
                 const std::shared_ptr<WKNavigationResponse>& decidePolicyFor,
                 std::function<void(WKNavigationResponsePolicy)> decisionHandler) override;
    std::shared_ptr<WKWebView> webView(
        const std::shared_ptr<WKWebView>& webView,
        const std::shared_ptr<WKWebViewConfiguration>& createWebViewWith,
        const std::shared_ptr<WKNavigationAction>& for_,
        const std::shared_ptr<WKWindowFeatures>& windowFeatures) override;
};

}  // namespace orvalo::testing
