#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/ui/UIButton.h"
#include "platform/ui/UIOutlet.h"
#include "platform/ui/UIViewController.h"
#include "platform/web/WKNavigationDelegate.h"
#include "platform/web/WKUIDelegate.h"
#include "platform/web/WKWebView.h"

namespace orvalo {

/// The screen with the maker's help or information page. Prints the addresses of navigations,
/// follows links to pages and documents only, and opens no window. Main thread.
class HelpViewController : public UIViewController,
                           public WKNavigationDelegate,
                           public WKUIDelegate {
  private:
    /// The page to show: "ShowHelp" or "ShowInfo".
    std::string identifier = "ShowHelp";

  public:
    UIWeakOutlet<WKWebView> webView_{"HelpViewController.webView"};
    UIOutlet<UIButton> buttonExit{"HelpViewController.buttonExit"};

    HelpViewController(const std::optional<std::string>& nibName,
                       const std::shared_ptr<Bundle>& bundle);
    explicit HelpViewController(const NSCoder& coder);

    /// Closes this screen.
    virtual void onButtonExit(const std::shared_ptr<NSObject>& sender);
    /// Shows the installed page instead of one that has not come yet.
    void onInstalledButton(const std::shared_ptr<UIButton>& sender);
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
    /// Shows the application's own page. Not called.
    virtual void loadHelpHtml();
    /// Shows the maker's help page.
    virtual void loadHelpPdf();
    /// Shows the maker's information page.
    virtual void navigateWeb();
    /// Sets the page to show. Call it before the screen appears.
    virtual void prepareInfo(const std::string& which);

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void didReceiveMemoryWarning() override;

  private:
    friend struct HelpViewControllerPeer;  ///< For tests.

    void load(const std::string& address) const;
};

}  // namespace orvalo
