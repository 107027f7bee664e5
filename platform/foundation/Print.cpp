#include "platform/foundation/Print.h"

#include <fcntl.h>
#include <glib.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <condition_variable>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace orvalo {

namespace {

/// For its life, writes of the calling thread to closed pipes fail without raising SIGPIPE. Leaves
/// the thread's signal mask and a SIGPIPE that was pending already as they were.
class PipeSignalGuard {
  public:
    PipeSignalGuard() noexcept {
        sigemptyset(&pipeSignal_);
        sigaddset(&pipeSignal_, SIGPIPE);
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipeSignal_, &maskBefore_);
    }
    ~PipeSignalGuard() {
        // A signal is pending at most once, so an earlier SIGPIPE stays pending.
        if (!wasPending_) {
            const timespec atOnce{};
            while (sigtimedwait(&pipeSignal_, nullptr, &atOnce) == -1 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &maskBefore_, nullptr);
    }
    PipeSignalGuard(const PipeSignalGuard&) = delete;
    PipeSignalGuard& operator=(const PipeSignalGuard&) = delete;

  private:
    sigset_t pipeSignal_{};
    sigset_t maskBefore_{};
    bool wasPending_ = false;
};

iovec piece(std::string_view text) {
    // writev() only reads the memory, but shares the type with readv().
    return {const_cast<char*>(text.data()), text.size()};
}

bool waitUntilWritable(int descriptor) {
    pollfd waiting{.fd = descriptor, .events = POLLOUT, .revents = 0};
    return poll(&waiting, 1, -1) >= 0 || errno == EINTR;
}

/// Opens /dev/null on each standard stream that is closed, so that no other file of the program
/// takes its place. Before all other initialisers, because these open files.
[[gnu::constructor(101)]] void openStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1) {
            // Opened for the wrong direction, so that its use fails as that of a closed stream. The
            // lowest free descriptor is this one.
            const int wrong = stream == STDIN_FILENO ? O_WRONLY : O_RDONLY;
            static_cast<void>(open("/dev/null", wrong));
        }
    }
}

/// The lines that an output does not take at once, and the thread that writes them.
class WaitingLines {
  public:
    using Clock = std::chrono::steady_clock;

    WaitingLines(int descriptor, const char* name) : descriptor_(descriptor), name_(name) {}

    void print(std::string_view text) {
        std::unique_lock lock(mutex_);
        const bool isFirst = lines_.empty();
        if (isFirst && isTakenAtOnce(text.size() + 1)) {
            writeLine(descriptor_, text);
            return;
        }
        if (!isFirst && bytes_ + text.size() > kMostBytes) {
            if (!std::exchange(hasLost_, true)) {
                lock.unlock();
                g_warning("Nobody reads %s; further lines are lost.", name_);
            }
            return;
        }
        bytes_ += text.size();
        lines_.emplace_back(text);
        if (!hasThread_) {
            hasThread_ = true;
            std::thread([this] { writeAll(); }).detach();
        }
        changed_.notify_all();
        if (isFirst) {
            // So that the line is on the terminal if the program crashes next.
            changed_.wait_for(lock, kUsualWrite, [this] { return lines_.empty(); });
        }
    }

    void finish(Clock::time_point limit) noexcept {
        std::unique_lock lock(mutex_);
        changed_.wait_until(lock, limit, [this] { return lines_.empty(); });
    }

  private:
    static constexpr std::size_t kMostBytes = std::size_t{1} << 20U;
    static constexpr std::chrono::milliseconds kUsualWrite{10};

    /// Whether a write of so many bytes returns at once.
    bool isTakenAtOnce(std::size_t bytes) const {
        struct stat status {};
        if (fstat(descriptor_, &status) != 0) {
            return true;
        }
        // A pipe that is ready has room for PIPE_BUF bytes. A terminal that is ready may have less.
        pollfd output{.fd = descriptor_, .events = POLLOUT, .revents = 0};
        return S_ISREG(status.st_mode) ||
               (S_ISFIFO(status.st_mode) && bytes <= PIPE_BUF && poll(&output, 1, 0) == 1);
    }

    [[noreturn]] void writeAll() {
        std::unique_lock lock(mutex_);
        while (true) {
            changed_.wait(lock, [this] { return !lines_.empty(); });
            // Stays in the list until it is written, so that print() does not overtake it.
            const auto& line = lines_.front();
            lock.unlock();
            writeLine(descriptor_, line);
            lock.lock();
            bytes_ -= line.size();
            lines_.pop_front();
            changed_.notify_all();
        }
    }

    const int descriptor_;
    const char* const name_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::string> lines_;
    std::size_t bytes_ = 0;
    bool hasThread_ = false;
    bool hasLost_ = false;
};

struct WaitingStreams {
    WaitingLines output{STDOUT_FILENO, "standard output"};
    WaitingLines error{STDERR_FILENO, "standard error"};
};

/// Set by printWithoutWaiting(). Never destroyed: its threads live as long as the process.
constinit std::atomic<WaitingStreams*> waitingStreams = nullptr;

}  // namespace

void print(std::string_view text) {
    if (auto* const waiting = waitingStreams.load()) {
        waiting->output.print(text);
        return;
    }
    // One write alone does not keep lines whole: pipes split long ones.
    static constinit std::mutex mutex;
    const std::lock_guard lock(mutex);
    writeLine(STDOUT_FILENO, text);
}

void printToStandardError(std::string_view text) {
    if (auto* const waiting = waitingStreams.load()) {
        waiting->error.print(text);
    } else {
        writeLine(STDERR_FILENO, text);
    }
}

void printWithoutWaiting() {
    waitingStreams = new WaitingStreams;
    std::atexit(finishPrinting);
}

void finishPrinting() noexcept {
    if (auto* const waiting = waitingStreams.load()) {
        const auto limit = WaitingLines::Clock::now() + std::chrono::milliseconds(500);
        waiting->output.finish(limit);
        waiting->error.finish(limit);
    }
}

void writeLine(int descriptor, std::string_view text) noexcept {
    const PipeSignalGuard guard;
    std::array<iovec, 2> pieces{piece(text), piece("\n")};
    std::size_t first = 0;
    while (first < pieces.size()) {
        const ssize_t result =
            writev(descriptor, &pieces.at(first), static_cast<int>(pieces.size() - first));
        if (result < 0) {
            if (errno == EINTR || (errno == EAGAIN && waitUntilWritable(descriptor))) {
                continue;
            }
            return;
        }
        auto written = static_cast<std::size_t>(result);
        while (first < pieces.size() && written >= pieces.at(first).iov_len) {
            written -= pieces.at(first).iov_len;
            ++first;
        }
        if (first < pieces.size()) {
            pieces.at(first).iov_base = static_cast<char*>(pieces.at(first).iov_base) + written;
            pieces.at(first).iov_len -= written;
        }
    }
}

}  // namespace orvalo
