#include "platform/foundation/StandardErrorLog.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/OneLine.h"
#include "platform/foundation/Print.h"

namespace orvalo {

namespace {

/// As g_log_writer_default(), which leaves line feeds and tabs as they are and waits for the reader
/// of standard error.
GLogWriterOutput writeEscaped(GLogLevelFlags level, const GLogField* given, gsize count,
                              gpointer data) {
    std::vector<GLogField> fields(given, given + count);
    const auto field = [&](std::string_view key) {
        return std::ranges::find_if(fields, [&](const GLogField& each) { return key == each.key; });
    };
    const auto domain = field("GLIB_DOMAIN");
    const bool isNamed = domain != fields.end() && domain->length == -1;
    const auto* name = isNamed ? static_cast<const char*>(domain->value) : nullptr;
    const auto message = field("MESSAGE");
    std::string text;
    if (name != nullptr && std::string_view(name) == G_LOG_DOMAIN && message != fields.end() &&
        message->length == -1) {
        text = onOneLine(static_cast<const char*>(message->value));
        message->value = text.c_str();
    }
    // GLib's writer takes the time from localtime(), whose result all threads share.
    static std::mutex turn;
    const std::lock_guard lock(turn);
    if (g_log_writer_is_journald(STDERR_FILENO) != FALSE) {
        return g_log_writer_default(level, fields.data(), fields.size(), data);
    }
    if (g_log_writer_default_would_drop(level, name) == FALSE) {
        const GText line(g_log_writer_format_fields(level, fields.data(), fields.size(),
                                                    g_log_writer_supports_color(STDERR_FILENO)));
        printToStandardError(line.get());
    }
    return G_LOG_WRITER_HANDLED;
}

}  // namespace

void logToStandardError() {
    g_log_writer_default_set_use_stderr(TRUE);
    g_log_set_writer_func(writeEscaped, nullptr, nullptr);
}

}  // namespace orvalo
