#include "platform/foundation/loading/LoadingThread.h"

#include <libsoup/soup.h>
#include <pthread.h>

#include <memory>
#include <thread>
#include <utility>

#include "platform/foundation/RunLoop.h"

namespace orvalo {

namespace {

// The usual number of web browsers; a server that hangs occupies six connections at most.
constexpr int connectionsPerHost = 6;
constexpr int connections = 10 * connectionsPerHost;

}  // namespace

LoadingThread& LoadingThread::shared() {
    static auto& thread = *new LoadingThread;
    return thread;
}

LoadingThread::LoadingThread() {
    std::thread([this] { run(); }).detach();
    isReady_.wait();
}

void LoadingThread::perform(WorkItem work) {
    g_main_context_invoke_full(
        context_, G_PRIORITY_DEFAULT,
        [](gpointer item) -> gboolean {
            (*static_cast<WorkItem*>(item))();
            return G_SOURCE_REMOVE;
        },
        std::make_unique<WorkItem>(std::move(work)).release(),
        [](gpointer item) { delete static_cast<WorkItem*>(item); });
}

void LoadingThread::run() {
    pthread_setname_np(pthread_self(), "orvalo-loading");
    const auto loop = RunLoop::current();
    context_ = loop->context();
    // No time-out: each transfer has its own.
    session_ = soup_session_new_with_options("max-conns", connections, "max-conns-per-host",
                                             connectionsPerHost, "timeout", 0U, "user-agent",
                                             "Orvalo", "accept-language-auto", TRUE, nullptr);
    isReady_.signal();
    loop->run();
}

}  // namespace orvalo
