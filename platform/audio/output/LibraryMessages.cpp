#include "platform/audio/output/LibraryMessages.h"

#include <alsa/asoundlib.h>
#include <glib.h>
#include <jack/jack.h>

#include <cstdarg>

namespace orvalo {

namespace {

void debugJack(const char* message) {
    g_debug("JACK: %s", message);
}

G_GNUC_PRINTF(5, 6)
void debugAlsa(const char* /*file*/, int /*line*/, const char* function, int /*code*/,
               const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    gchar* message = g_strdup_vprintf(format, arguments);
    va_end(arguments);
    g_debug("ALSA: %s: %s", function, message);
    g_free(message);
}

}  // namespace

void takeLibraryMessages() {
    jack_set_error_function(debugJack);
    jack_set_info_function(debugJack);
    snd_lib_error_set_handler(debugAlsa);
}

}  // namespace orvalo
