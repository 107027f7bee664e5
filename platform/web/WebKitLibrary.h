#pragma once

#include <webkit/webkit.h>

#include "platform/foundation/LastingLibrary.h"

namespace orvalo {

/// What is used of WebKitGTK, under its own names. It needs 130 libraries more, whose loading takes
/// 34 ms, so that it is loaded with the first web view.
class WebKitLibrary {
    LastingLibrary library_{"libwebkitgtk-6.0.so.4"};

  public:
#define ORVALO_WEBKIT(name) decltype(::name)* const name = library_[#name]
    ORVALO_WEBKIT(webkit_download_cancel);
    ORVALO_WEBKIT(webkit_download_get_request);
    ORVALO_WEBKIT(webkit_navigation_action_get_request);
    ORVALO_WEBKIT(webkit_navigation_action_is_redirect);
    ORVALO_WEBKIT(webkit_navigation_policy_decision_get_navigation_action);
    ORVALO_WEBKIT(webkit_network_error_quark);
    ORVALO_WEBKIT(webkit_network_session_get_default);
    ORVALO_WEBKIT(webkit_policy_decision_ignore);
    ORVALO_WEBKIT(webkit_policy_decision_use);
    ORVALO_WEBKIT(webkit_policy_error_quark);
    ORVALO_WEBKIT(webkit_response_policy_decision_get_response);
    ORVALO_WEBKIT(webkit_response_policy_decision_is_main_frame_main_resource);
    ORVALO_WEBKIT(webkit_settings_set_javascript_can_open_windows_automatically);
    ORVALO_WEBKIT(webkit_uri_request_get_uri);
    ORVALO_WEBKIT(webkit_uri_response_get_status_code);
    ORVALO_WEBKIT(webkit_uri_response_get_uri);
    ORVALO_WEBKIT(webkit_web_view_get_settings);
    ORVALO_WEBKIT(webkit_web_view_get_type);
    ORVALO_WEBKIT(webkit_web_view_get_uri);
    ORVALO_WEBKIT(webkit_web_view_load_html);
    ORVALO_WEBKIT(webkit_web_view_load_uri);
    ORVALO_WEBKIT(webkit_web_view_stop_loading);
#undef ORVALO_WEBKIT
};

/// The library; loaded by the first call. A fatal error when it cannot be. Main thread.
const WebKitLibrary& webkit();

}  // namespace orvalo
