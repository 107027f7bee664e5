#include "app/AppDelegate.h"

namespace orvalo {

bool AppDelegate::application(
    const std::shared_ptr<UIApplication>& /*application*/,
    const std::map<std::string, std::string>& /*didFinishLaunchingWithOptions*/) {
    return true;
}

void AppDelegate::applicationWillResignActive(
    const std::shared_ptr<UIApplication>& /*application*/) {}

void AppDelegate::applicationDidEnterBackground(
    const std::shared_ptr<UIApplication>& /*application*/) {}

void AppDelegate::applicationWillEnterForeground(
    const std::shared_ptr<UIApplication>& /*application*/) {}

void AppDelegate::applicationDidBecomeActive(
    const std::shared_ptr<UIApplication>& /*application*/) {}

void AppDelegate::applicationWillTerminate(const std::shared_ptr<UIApplication>& /*application*/) {}

}  // namespace orvalo
