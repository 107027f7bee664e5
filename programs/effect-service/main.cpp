#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "platform/foundation/Print.h"
#include "programs/effect-service/EffectService.h"
#include "programs/effect-service/ServiceLimits.h"

namespace {

constexpr int kSocket = 3;

/// Writes log messages to standard error as bare lines; the host puts them into its own log.
GLogWriterOutput writePlainLine(GLogLevelFlags level, const GLogField* fields, gsize count,
                                gpointer /*data*/) {
    const auto field = [&](std::string_view key) {
        const auto* found = std::find_if(fields, fields + count, [&](const GLogField& candidate) {
            return key == candidate.key;
        });
        return found == fields + count ? nullptr : static_cast<const char*>(found->value);
    };
    if (g_log_writer_default_would_drop(level, field("GLIB_DOMAIN")) == FALSE) {
        const char* message = field("MESSAGE");
        orvalo::writeLine(STDERR_FILENO, message == nullptr ? "" : message);
    }
    return G_LOG_WRITER_HANDLED;
}

}  // namespace

/// effect-service PARENT [FILTER]: runs one effect for the host, whose socket is descriptor 3. The
/// service ends with its parent, the process with the ID PARENT. Descriptor FILTER is a filter for
/// system calls that the service loads.
int main(int argc, char** argv) {
    using namespace orvalo;
    g_log_set_writer_func(writePlainLine, nullptr, nullptr);
    const auto argument = [&](int place) {
        return place < argc ? static_cast<int>(std::strtol(argv[place], nullptr, 10)) : 0;
    };
    if (argument(1) <= 0) {
        g_warning("effect-service is started by the programs that need it, not by hand.");
        return 2;
    }
    if (!bindToParent(argument(1))) {
        return 0;
    }
    applyServiceLimits();
    if (const int filter = argument(2); filter > 0) {
        loadCallFilter(filter);
        close(filter);
    }
    // Processes that the effect starts do not inherit the socket.
    fcntl(kSocket, F_SETFD, FD_CLOEXEC);
    EffectService service{FileDescriptor(kSocket)};
    // Without exit handlers: the effect's threads may still use what these destroy.
    _exit(service.run());
}
