#include "platform/ui/UIApplication.h"

#include <gio/gio.h>

#include <utility>

#include "platform/foundation/GLibPointer.h"
#include "platform/ui/MainThread.h"

namespace orvalo {

namespace {

struct Opening {
    std::string address;
    std::function<void(bool)> completion;
};

void opened(GObject* /*source*/, GAsyncResult* result, void* data) {
    const std::unique_ptr<Opening> opening(static_cast<Opening*>(data));
    GError* error = nullptr;
    const bool isOpen = g_app_info_launch_default_for_uri_finish(result, &error) != FALSE;
    if (!isOpen) {
        const std::unique_ptr<GError, Release<g_error_free>> held(error);
        g_warning("%s was not opened: %s", opening->address.c_str(), held->message);
    }
    if (opening->completion) {
        opening->completion(isOpen);
    }
}

}  // namespace

const std::shared_ptr<UIApplication>& UIApplication::shared() {
    static const auto* const application =
        new std::shared_ptr<UIApplication>(std::make_shared<UIApplication>());
    return *application;
}

void UIApplication::open(const URL& url, const std::map<std::string, std::string>& /*options*/,
                         std::function<void(bool)> completion) {
    requireMainThread("UIApplication.open");
    g_app_info_launch_default_for_uri_async(
        url.absoluteString().c_str(), nullptr, nullptr, opened,
        new Opening{url.absoluteString(), std::move(completion)});
}

}  // namespace orvalo
