#include "platform/ui/UIApplication.h"

#include <gio/gio.h>

#include <memory>
#include <utility>

#include "platform/foundation/GLibPointer.h"
#include "platform/ui/MainThread.h"

namespace orvalo {

namespace {

struct Opening {
    std::string address;
    std::function<void(bool)> completion;

    static void ended(GObject* /*source*/, GAsyncResult* result, void* data) {
        const std::unique_ptr<Opening> self(static_cast<Opening*>(data));
        GError* error = nullptr;
        const bool isOpen = g_app_info_launch_default_for_uri_finish(result, &error) != FALSE;
        const std::unique_ptr<GError, Release<g_error_free>> held(error);
        if (held != nullptr) {
            g_warning("%s was not opened: %s", self->address.c_str(), held->message);
        }
        if (self->completion) {
            self->completion(isOpen);
        }
    }
};

}  // namespace

const std::shared_ptr<UIApplication>& UIApplication::shared() {
    static const auto* const application =
        new std::shared_ptr<UIApplication>(std::make_shared<UIApplication>());
    return *application;
}

void UIApplication::open(const URL& url, const std::map<std::string, std::string>& /*options*/,
                         std::function<void(bool)> completion) {
    requireMainThread("UIApplication.open");
    auto opening = std::make_unique<Opening>(Opening{url.absoluteString(), std::move(completion)});
    const auto* address = opening->address.c_str();
    g_app_info_launch_default_for_uri_async(address, nullptr, nullptr, Opening::ended,
                                            opening.release());
}

}  // namespace orvalo
