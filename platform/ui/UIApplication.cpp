#include "platform/ui/UIApplication.h"

#include <giomm/appinfo.h>
#include <giomm/init.h>

#include <utility>

#include "platform/ui/MainThread.h"

namespace orvalo {

const std::shared_ptr<UIApplication>& UIApplication::shared() {
    static const auto* const application =
        new std::shared_ptr<UIApplication>(std::make_shared<UIApplication>());
    return *application;
}

void UIApplication::open(const URL& url, const std::map<std::string, std::string>& /*options*/,
                         std::function<void(bool)> completion) {
    requireMainThread("UIApplication.open");
    Gio::init();
    const auto& address = url.absoluteString();
    Gio::AppInfo::launch_default_for_uri_async(
        address, [address, completion = std::move(completion)](
                     const Glib::RefPtr<Gio::AsyncResult>& result) {
            bool isOpen = false;
            try {
                isOpen = Gio::AppInfo::launch_default_for_uri_finish(result);
            } catch (const Glib::Error& error) {
                g_warning("%s was not opened: %s", address.c_str(), error.what());
            }
            if (completion) {
                completion(isOpen);
            }
        });
}

}  // namespace orvalo
