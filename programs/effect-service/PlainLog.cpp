#include "programs/effect-service/PlainLog.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/foundation/Print.h"

namespace orvalo {

namespace {

GLogWriterOutput write(GLogLevelFlags level, const GLogField* fields, gsize count,
                       gpointer /*data*/) {
    const auto field = [&](std::string_view key) {
        const auto* found = std::find_if(fields, fields + count, [&](const GLogField& candidate) {
            return key == candidate.key;
        });
        return found == fields + count ? nullptr : static_cast<const char*>(found->value);
    };
    if (g_log_writer_default_would_drop(level, field("GLIB_DOMAIN")) == FALSE) {
        const char* message = field("MESSAGE");
        writeLine(STDERR_FILENO, {}, message == nullptr ? "" : message);
    }
    return G_LOG_WRITER_HANDLED;
}

}  // namespace

void usePlainLog() {
    g_log_set_writer_func(write, nullptr, nullptr);
}

}  // namespace orvalo
