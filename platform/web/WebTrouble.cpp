#include "platform/web/WebTrouble.h"

#include "platform/web/WebKit.h"

namespace orvalo {

bool isWanted(const GError* error) {
    return g_error_matches(error, lateWebKit(webkit_network_error_quark)(),
                           WEBKIT_NETWORK_ERROR_CANCELLED) ||
           g_error_matches(error, lateWebKit(webkit_policy_error_quark)(),
                           WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE);
}

namespace {

gboolean loadFailed(WebKitWebView* /*view*/, WebKitLoadEvent /*event*/, const char* address,
                    const GError* error, gpointer /*data*/) {
    if (!isWanted(error)) {
        g_warning("%s could not be loaded: %s", address, error->message);
    }
    // Otherwise the engine would show its error page.
    return TRUE;
}

const char* reasonText(WebKitWebProcessTerminationReason reason) {
    switch (reason) {
        case WEBKIT_WEB_PROCESS_CRASHED:
            return "crashed";
        case WEBKIT_WEB_PROCESS_EXCEEDED_MEMORY_LIMIT:
            return "took too much memory";
        case WEBKIT_WEB_PROCESS_TERMINATED_BY_API:
            return "was ended";
    }
    return "ended";
}

void processTerminated(WebKitWebView* view, WebKitWebProcessTerminationReason reason,
                       gpointer /*data*/) {
    g_warning("The process of the page %s %s.", lateWebKit(webkit_web_view_get_uri)(view),
              reasonText(reason));
}

void refuseDownload(WebKitNetworkSession* /*session*/, WebKitDownload* download,
                    gpointer /*data*/) {
    g_warning(
        "The download of %s was refused.",
        lateWebKit(webkit_uri_request_get_uri)(lateWebKit(webkit_download_get_request)(download)));
    lateWebKit(webkit_download_cancel)(download);
}

}  // namespace

void reportTrouble(WebKitWebView* view) {
    g_signal_connect(view, "load-failed", G_CALLBACK(loadFailed), nullptr);
    g_signal_connect(view, "web-process-terminated", G_CALLBACK(processTerminated), nullptr);
    static const auto downloads =
        g_signal_connect(lateWebKit(webkit_network_session_get_default)(), "download-started",
                         G_CALLBACK(refuseDownload), nullptr);
    static_cast<void>(downloads);
}

}  // namespace orvalo
