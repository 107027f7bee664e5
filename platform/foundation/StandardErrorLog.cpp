#include "platform/foundation/StandardErrorLog.h"

#include <glib.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/OneLine.h"

namespace orvalo {

namespace {

/// As g_log_writer_default(), which leaves line feeds and tabs as they are.
GLogWriterOutput writeEscaped(GLogLevelFlags level, const GLogField* given, gsize count,
                              gpointer data) {
    std::vector<GLogField> fields(given, given + count);
    const auto field = [&](std::string_view key) {
        return std::ranges::find_if(fields, [&](const GLogField& each) { return key == each.key; });
    };
    const auto domain = field("GLIB_DOMAIN");
    const auto message = field("MESSAGE");
    std::string text;
    if (domain != fields.end() && message != fields.end() && domain->length == -1 &&
        std::string_view(static_cast<const char*>(domain->value)) == G_LOG_DOMAIN &&
        message->length == -1) {
        text = onOneLine(static_cast<const char*>(message->value));
        message->value = text.c_str();
    }
    // GLib's writer takes the time from localtime(), whose result all threads share.
    static std::mutex turn;
    const std::lock_guard lock(turn);
    return g_log_writer_default(level, fields.data(), fields.size(), data);
}

}  // namespace

void logToStandardError() {
    g_log_writer_default_set_use_stderr(TRUE);
    g_log_set_writer_func(writeEscaped, nullptr, nullptr);
}

}  // namespace orvalo
