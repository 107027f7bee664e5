#include "platform/ui/UIApplication.h"

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <unistd.h>

#include <memory>
#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/ui/MainThread.h"

namespace orvalo {

namespace {

/// Starts the desktop's program for addresses of that scheme. Its standard output is our standard
/// error, so that it neither adds lines to our standard output nor keeps that pipe open. Without
/// such a program, as in Flatpak, the address goes to the portal where there is one.
bool launch(const std::string& address) {
    GError* error = nullptr;
    bool isLaunched = false;
    const GText scheme(g_uri_parse_scheme(address.c_str()));
    const GObjectPointer<GAppInfo> program(
        scheme == nullptr                   ? nullptr
        : g_str_equal(scheme.get(), "file") ? g_app_info_get_default_for_type("text/html", TRUE)
                                            : g_app_info_get_default_for_uri_scheme(scheme.get()));
    if (program != nullptr) {
        std::string text = address;
        GList list{text.data(), nullptr, nullptr};
        isLaunched =
            g_desktop_app_info_launch_uris_as_manager_with_fds(
                G_DESKTOP_APP_INFO(program.get()), &list, nullptr, G_SPAWN_SEARCH_PATH, nullptr,
                nullptr, nullptr, nullptr, -1, STDERR_FILENO, STDERR_FILENO, &error) != FALSE;
    } else {
        isLaunched = g_app_info_launch_default_for_uri(address.c_str(), nullptr, &error) != FALSE;
    }
    const GErrorPointer held(error);
    if (!isLaunched) {
        g_warning("%s was not opened: %s", address.c_str(), held->message);
    }
    return isLaunched;
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
    const bool isOpen = launch(url.absoluteString());
    if (completion) {
        DispatchQueue::main()->async(
            [completion = std::move(completion), isOpen] { completion(isOpen); });
    }
}

}  // namespace orvalo
