#include "tests/testing/WaitUntil.h"

#include <glib.h>

#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/RunLoop.h"

namespace orvalo::testing {

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    return RunLoop::current()->run(condition, timeout);
}

bool pollUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    const auto loop = RunLoop::current();
    const GSourcePointer looks(g_timeout_source_new(2));
    // Lowest, so that all other ready sources run first.
    g_source_set_priority(looks.get(), G_PRIORITY_LOW);
    g_source_set_callback(
        looks.get(), [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
    g_source_attach(looks.get(), loop->context());
    return loop->run(condition, timeout);
}

}  // namespace orvalo::testing
