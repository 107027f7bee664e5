#include "platform/foundation/loading/LoadingThread.h"

#include <libsoup/soup.h>
#include <pthread.h>

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
    {
        // Not as the source's data: the thread sanitizer does not see GLib's locks.
        const std::lock_guard lock(mutex_);
        items_.push_back(std::move(work));
    }
    g_main_context_invoke(
        context_,
        [](gpointer self) -> gboolean {
            static_cast<LoadingThread*>(self)->runOne();
            return G_SOURCE_REMOVE;
        },
        this);
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

void LoadingThread::runOne() {
    WorkItem work;
    {
        const std::lock_guard lock(mutex_);
        work = std::move(items_.front());
        items_.pop_front();
    }
    work();
}

}  // namespace orvalo
