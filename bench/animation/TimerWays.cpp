#include "bench/animation/TimerWays.h"

#include <glib.h>

#include "platform/foundation/RunLoop.h"
#include "platform/foundation/Timer.h"

namespace orvalo::bench {

void runTimer(int milliseconds, const std::function<bool()>& tick) {
    constexpr double millisecondsInSecond = 1000;
    const auto loop = RunLoop::current();
    const auto timer =
        Timer::scheduledTimer(milliseconds / millisecondsInSecond, [&](const auto& fired) {
            if (!tick()) {
                fired->invalidate();
                loop->stop();
            }
        });
    loop->run();
}

void runTimeout(int milliseconds, const std::function<bool()>& tick) {
    struct State {
        const std::function<bool()>& tick;
        bool isRunning = true;
    } state{tick};
    auto* const context = g_main_context_new();
    auto* const source = g_timeout_source_new(static_cast<guint>(milliseconds));
    g_source_set_callback(
        source,
        [](gpointer data) -> gboolean {
            auto& own = *static_cast<State*>(data);
            own.isRunning = own.tick();
            return own.isRunning ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
        },
        &state, nullptr);
    g_source_attach(source, context);
    while (state.isRunning) {
        g_main_context_iteration(context, TRUE);
    }
    g_source_unref(source);
    g_main_context_unref(context);
}

}  // namespace orvalo::bench
