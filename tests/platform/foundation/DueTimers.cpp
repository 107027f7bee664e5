#include "tests/platform/foundation/DueTimers.h"

#include <glib.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/foundation/RunLoop.h"

namespace orvalo::testing {

namespace {

/// The descriptors that the next turn would poll.
std::vector<GPollFD> pollsOf(GMainContext* context) {
    gint priority = 0;
    gint timeout = 0;
    g_main_context_prepare(context, &priority);
    std::vector<GPollFD> polls(1);
    for (gint count = 0; (count = g_main_context_query(context, priority, &timeout, polls.data(),
                                                       static_cast<gint>(polls.size()))) !=
                         static_cast<gint>(polls.size());) {
        polls.resize(static_cast<std::size_t>(count));
    }
    return polls;
}

bool isDueTimer(const GPollFD& poll) {
    const auto link = "/proc/self/fd/" + std::to_string(poll.fd);
    pollfd now{poll.fd, POLLIN, 0};
    return std::filesystem::read_symlink(link) == "anon_inode:[timerfd]" && ::poll(&now, 1, 0) == 1;
}

}  // namespace

bool waitUntilDue(std::size_t timers) {
    GMainContext* context = RunLoop::current()->context();
    if (!g_main_context_acquire(context)) {
        return false;
    }
    const auto polls = pollsOf(context);
    g_main_context_release(context);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    const auto areDue = [&] {
        return static_cast<std::size_t>(std::ranges::count_if(polls, isDueTimer)) >= timers;
    };
    bool holds = areDue();
    while (!holds && std::chrono::steady_clock::now() < end) {
        holds = areDue();
    }
    return holds;
}

}  // namespace orvalo::testing
