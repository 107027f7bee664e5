#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/ui/UIApplicationDelegate.h"
#include "platform/ui/UIResponder.h"

namespace orvalo {

class UIWindow;

/// The application's delegate. Its notifications do nothing: the layout creates the screens. Main
/// thread.
class AppDelegate : public UIResponder, public UIApplicationDelegate {
  public:
    /// The window of the layout; set by the platform.
    std::shared_ptr<UIWindow> window;

    void setWindow(const std::shared_ptr<UIWindow>& layoutWindow) override {
        window = layoutWindow;
    }
    bool application(
        const std::shared_ptr<UIApplication>& application,
        const std::map<std::string, std::string>& didFinishLaunchingWithOptions) override;
    void applicationWillResignActive(const std::shared_ptr<UIApplication>& application) override;
    void applicationDidEnterBackground(const std::shared_ptr<UIApplication>& application) override;
    void applicationWillEnterForeground(const std::shared_ptr<UIApplication>& application) override;
    void applicationDidBecomeActive(const std::shared_ptr<UIApplication>& application) override;
    void applicationWillTerminate(const std::shared_ptr<UIApplication>& application) override;
};

}  // namespace orvalo
