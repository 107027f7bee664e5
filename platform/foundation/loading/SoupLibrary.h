#pragma once

#include <libsoup/soup.h>

#include "platform/foundation/LastingLibrary.h"

namespace orvalo {

/// What is used of libsoup, under its own names. Few programs load from the web, and with what it
/// needs it takes 4 ms to load, so that it is loaded with the first request.
class SoupLibrary {
    LastingLibrary library_{"libsoup-3.0.so.0"};

  public:
#define ORVALO_SOUP(name) decltype(::name)* const name = library_[#name]
    ORVALO_SOUP(soup_message_get_status);
    ORVALO_SOUP(soup_message_get_uri);
    ORVALO_SOUP(soup_message_new_from_uri);
    ORVALO_SOUP(soup_session_error_quark);
    ORVALO_SOUP(soup_session_new_with_options);
    ORVALO_SOUP(soup_session_send_async);
    ORVALO_SOUP(soup_session_send_finish);
#undef ORVALO_SOUP
};

/// The library; loaded by the first call. A fatal error when it cannot be. Any thread.
const SoupLibrary& soup();

}  // namespace orvalo
