#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/URL.h"
#include "platform/foundation/URLRequest.h"
#include "platform/ui/UIView.h"
#include "platform/web/InstalledSite.h"

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

/// Shows a web page, which runs in a sandboxed process; invisible until the first one arrives. When
/// the machine cannot create the sandbox, nothing is loaded and the reason is logged. Its delegates
/// decide about navigations and new windows; without them all navigations are allowed and no window
/// opens. Failures are logged, and the view can load again. All operations on the main thread;
/// elsewhere a fatal error that names the operation.
class WKWebView : public UIView {
  public:
    /// Over a WebKitWebView of the layout.
    explicit WKWebView(GtkWidget* widget);
    /// A view made by code. configuration: the one that the UI delegate was given for a new window,
    /// or a new one.
    explicit WKWebView(const std::shared_ptr<WKWebViewConfiguration>& configuration);
    /// Refuses decisions that are still open.
    ~WKWebView() override;

    /// Registers this class for the WebKitWebViews of layouts and of UIView::of().
    static void registerClass();

    /// Decides about new windows. Not kept alive; may be absent.
    std::shared_ptr<WKUIDelegate> uiDelegate() const;
    void setUIDelegate(const std::shared_ptr<WKUIDelegate>& delegate);
    /// Decides about navigations. Not kept alive; may be absent.
    std::shared_ptr<WKNavigationDelegate> navigationDelegate() const;
    void setNavigationDelegate(const std::shared_ptr<WKNavigationDelegate>& delegate);

    /// Pages to show, without asking the delegates, where an address of their site cannot be
    /// reached: without a network or such a host, when it does not answer in time or fails to prove
    /// its identity. Links between them show installed pages, too; load() tries the site again.
    void setInstalledSite(InstalledSite site);
    /// Waits no longer for a site that has sent nothing of its page yet: stops the load, and shows
    /// the installed page where there is one. Otherwise does nothing.
    void showInstalledSite();

    /// Starts to load an address. A load that makes no progress within the request's time-out is
    /// stopped; the time-out also applies to links followed from there. A request without an
    /// address is passed to the delegate and loads nothing.
    std::shared_ptr<WKNavigation> load(const URLRequest& request);
    /// Starts to show HTML text. baseURL: the base of relative links, "about:blank" when absent;
    /// with a file's address the page can show files.
    std::shared_ptr<WKNavigation> loadHTMLString(const std::string& string,
                                                 const std::optional<URL>& baseURL);

  private:
    struct Signals;

    WebKitWebView* engine() const;
    void connect();
    /// Passes an action to the delegate. halts: whether the current load waits for the answer.
    void decideAction(WebKitPolicyDecision* decision, const URLRequest& request, bool halts);
    void decideResponse(WebKitPolicyDecision* decision);
    std::shared_ptr<WKWebView> createWebView(WebKitNavigationAction* action);
    /// Shows the installed page of an address, if there is one.
    void showInstalled(const std::string& wanted);
    /// Whether an address leads from an installed page to another one.
    bool isBetweenInstalled(const std::string& address) const;
    /// Keeps a decision open until the returned function is called.
    std::function<void(bool)> open(WebKitPolicyDecision* decision, const std::string& handler,
                                   bool halts);

    std::shared_ptr<WKWebViewConfiguration> configuration_;
    std::weak_ptr<WKUIDelegate> uiDelegate_;
    std::weak_ptr<WKNavigationDelegate> navigationDelegate_;
    std::vector<std::shared_ptr<PolicyDecision>> decisions_;
    std::unique_ptr<LoadWatch> watch_;
    std::optional<InstalledSite> installedSite_;
    /// The address of the installed page that is shown; empty while the site's own pages are.
    std::string installed_;
};

}  // namespace orvalo
