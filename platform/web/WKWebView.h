#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/URL.h"
#include "platform/foundation/URLRequest.h"
#include "platform/ui/UIView.h"

using WebKitWebView = struct _WebKitWebView;  // NOLINT(bugprone-reserved-identifier): WebKit's own.
// NOLINTNEXTLINE(bugprone-reserved-identifier): WebKit's own.
using WebKitPolicyDecision = struct _WebKitPolicyDecision;
// NOLINTNEXTLINE(bugprone-reserved-identifier): WebKit's own.
using WebKitNavigationAction = struct _WebKitNavigationAction;

namespace orvalo {

class LoadWatch;
class PolicyDecision;
class WKNavigation;
class WKNavigationDelegate;
class WKUIDelegate;
class WKWebViewConfiguration;

/// Shows a web page, in a process of its own and sandboxed; where the machine cannot sandbox it,
/// nothing is loaded and a line on standard error says why. Its delegates decide where it goes;
/// without them everything is allowed but new windows. What goes wrong is told on standard error
/// and leaves the view ready for the next load. All operations on the main thread; elsewhere a
/// fatal error that names the operation.
class WKWebView : public UIView {
  public:
    /// Over a WebKitWebView of the layout.
    explicit WKWebView(GtkWidget* widget);
    /// A view made by code. configuration: the one that a delegate was given for a new window, or a
    /// new one.
    explicit WKWebView(const std::shared_ptr<WKWebViewConfiguration>& configuration);
    /// Refuses the decisions that are still open.
    ~WKWebView() override;

    /// Makes layouts and UIView::of() know the class WebKitWebView, whose views are these.
    static void registerClass();

    /// Who decides about new windows; not kept alive, absent when there is none.
    std::shared_ptr<WKUIDelegate> uiDelegate() const;
    void setUIDelegate(const std::shared_ptr<WKUIDelegate>& delegate);
    /// Who decides about navigations; not kept alive, absent when there is none.
    std::shared_ptr<WKNavigationDelegate> navigationDelegate() const;
    void setNavigationDelegate(const std::shared_ptr<WKNavigationDelegate>& delegate);

    /// Starts to load an address. When nothing has come for the request's time-out, the load is
    /// stopped; the time-out holds for the links followed from there too. A request without an
    /// address is put to the delegate and then loads nothing.
    std::shared_ptr<WKNavigation> load(const URLRequest& request);
    /// Starts to show a text of HTML. baseURL: where its relative links start, "about:blank" when
    /// absent; next to a file's address, files can be shown.
    std::shared_ptr<WKNavigation> loadHTMLString(const std::string& string,
                                                 const std::optional<URL>& baseURL);

  private:
    struct Signals;

    WebKitWebView* engine() const;
    void connect();
    /// Puts an action to the delegate. halts: whether the load under way waits for the answer.
    void decideAction(WebKitPolicyDecision* decision, const URLRequest& request, bool halts);
    void decideResponse(WebKitPolicyDecision* decision);
    std::shared_ptr<WKWebView> createWebView(WebKitNavigationAction* action);
    /// Keeps a decision open until the result is called.
    std::function<void(bool)> open(WebKitPolicyDecision* decision, const std::string& handler,
                                   bool halts);

    std::shared_ptr<WKWebViewConfiguration> configuration_;
    std::weak_ptr<WKUIDelegate> uiDelegate_;
    std::weak_ptr<WKNavigationDelegate> navigationDelegate_;
    std::vector<std::shared_ptr<PolicyDecision>> decisions_;
    std::unique_ptr<LoadWatch> watch_;
};

}  // namespace orvalo
