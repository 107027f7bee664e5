#pragma once

#include <map>
#include <memory>
#include <string>

namespace orvalo {

class UIApplication;
class UIWindow;

/// Receives the application's notifications on the main thread.
class UIApplicationDelegate {
  public:
    virtual ~UIApplicationDelegate() = default;

    /// The window of the main layout. Called before the first notification.
    virtual void setWindow(const std::shared_ptr<UIWindow>& window) = 0;

    /// The application has started; its window is shown next. The result is ignored.
    virtual bool application(
        const std::shared_ptr<UIApplication>& application,
        const std::map<std::string, std::string>& didFinishLaunchingWithOptions) = 0;
    virtual void applicationWillResignActive(const std::shared_ptr<UIApplication>& application) = 0;
    virtual void applicationDidEnterBackground(
        const std::shared_ptr<UIApplication>& application) = 0;
    virtual void applicationWillEnterForeground(
        const std::shared_ptr<UIApplication>& application) = 0;
    virtual void applicationDidBecomeActive(const std::shared_ptr<UIApplication>& application) = 0;
    virtual void applicationWillTerminate(const std::shared_ptr<UIApplication>& application) = 0;
};

}  // namespace orvalo
