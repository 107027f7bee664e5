#include "platform/audio/lv2/LV2Log.h"

#include <glib.h>
#include <glib/gprintf.h>
#include <pthread.h>
#include <semaphore.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <thread>

#include "platform/audio/lv2/URIDMap.h"
#include "platform/foundation/RealTimeScope.h"

namespace orvalo {

namespace {

/// The process's queue of log entries from the render thread, and the thread that writes them.
class LV2LogQueue {
  public:
    static LV2LogQueue& shared();

    /// Adds an entry. uri must live until the next drain(). Lock-free; any thread.
    void push(const char* uri, LV2_URID type, const char* text) noexcept;
    /// Writes all entries on the calling thread.
    void drain();
    /// Writes one entry to GLib's log: errors and warnings as warnings, traces as debug messages,
    /// everything else as messages.
    static void write(const char* uri, LV2_URID type, const char* text);

    LV2LogQueue(const LV2LogQueue&) = delete;
    LV2LogQueue& operator=(const LV2LogQueue&) = delete;

  private:
    LV2LogQueue();
    ~LV2LogQueue() = default;

    // A bounded queue of many writers and one reader. turn == n: free for entry n; turn == n + 1:
    // holds entry n.
    struct Slot {
        std::atomic<std::size_t> turn;
        const char* uri;
        LV2_URID type;
        std::array<char, LV2Log::kLongestText> text;
    };

    std::array<Slot, LV2Log::kCapacity> slots_{};
    std::atomic<std::size_t> next_{0};
    std::atomic<unsigned> dropped_{0};
    std::mutex reading_;
    std::size_t first_ = 0;  // Guarded by reading_.
    sem_t filled_{};
};

LV2LogQueue& LV2LogQueue::shared() {
    // Never destroyed: its thread and the plug-ins' threads run until the process ends.
    static auto* queue = new LV2LogQueue;
    return *queue;
}

LV2LogQueue::LV2LogQueue() {
    for (std::size_t index = 0; index < LV2Log::kCapacity; ++index) {
        slots_[index].turn.store(index, std::memory_order_relaxed);
    }
    sem_init(&filled_, 0, 0);
    std::thread([this] {
        pthread_setname_np(pthread_self(), "lv2-log");
        for (;;) {
            while (sem_wait(&filled_) != 0 && errno == EINTR) {
            }
            drain();
        }
    }).detach();
}

void LV2LogQueue::push(const char* uri, LV2_URID type, const char* text) noexcept {
    auto turn = next_.load(std::memory_order_relaxed);
    for (;;) {
        auto& slot = slots_[turn % LV2Log::kCapacity];
        const auto free = slot.turn.load(std::memory_order_acquire);
        if (free == turn) {
            if (next_.compare_exchange_weak(turn, turn + 1, std::memory_order_relaxed)) {
                slot.uri = uri;
                slot.type = type;
                const auto length = std::min(std::strlen(text), LV2Log::kLongestText - 1);
                std::memcpy(slot.text.data(), text, length);
                slot.text[length] = '\0';
                slot.turn.store(turn + 1, std::memory_order_release);
                break;
            }
        } else if (free < turn) {
            dropped_.fetch_add(1, std::memory_order_relaxed);
            break;
        } else {
            turn = next_.load(std::memory_order_relaxed);
        }
    }
    sem_post(&filled_);
}

void LV2LogQueue::drain() {
    const std::scoped_lock lock(reading_);
    for (;;) {
        auto& slot = slots_[first_ % LV2Log::kCapacity];
        if (slot.turn.load(std::memory_order_acquire) != first_ + 1) {
            break;
        }
        write(slot.uri, slot.type, slot.text.data());
        slot.turn.store(first_ + LV2Log::kCapacity, std::memory_order_release);
        ++first_;
    }
    if (const auto dropped = dropped_.exchange(0, std::memory_order_relaxed); dropped > 0) {
        g_warning("%u log entries of plug-ins were dropped: more than %zu waited.", dropped,
                  LV2Log::kCapacity);
    }
}

void LV2LogQueue::write(const char* uri, LV2_URID type, const char* text) {
    const auto& urids = LV2URIDs::shared();
    auto level = G_LOG_LEVEL_MESSAGE;
    if (type == urids.logError || type == urids.logWarning) {
        level = G_LOG_LEVEL_WARNING;
    } else if (type == urids.logTrace) {
        level = G_LOG_LEVEL_DEBUG;
    }
    std::string line(text);
    while (line.ends_with('\n')) {
        line.pop_back();
    }
    g_log(G_LOG_DOMAIN, level, "<%s>: %s", uri, line.c_str());
}

}  // namespace

LV2Log::LV2Log(std::string uri) : uri_(std::move(uri)), feature_{this, printText, printList} {
    LV2LogQueue::shared();  // The render thread must not construct it.
}

LV2Log::~LV2Log() {
    LV2LogQueue::shared().drain();
}

void LV2Log::write(LV2_URID type, const char* text) const {
    if (RealTimeScope::isActive()) {
        LV2LogQueue::shared().push(uri_.c_str(), type, text);
    } else {
        LV2LogQueue::write(uri_.c_str(), type, text);
    }
}

int LV2Log::printText(LV2_Log_Handle handle, LV2_URID type, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = printList(handle, type, format, arguments);
    va_end(arguments);
    return result;
}

int LV2Log::printList(LV2_Log_Handle handle, LV2_URID type, const char* format, va_list arguments) {
    const auto& log = *static_cast<const LV2Log*>(handle);
    if (RealTimeScope::isActive()) {
        std::array<char, kLongestText> text{};
        // The caller has started the list.
        // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
        const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
        log.write(type, text.data());
        return length;
    }
    gchar* text = nullptr;
    const int length = g_vasprintf(&text, format, arguments);
    if (text != nullptr) {
        log.write(type, text);
    }
    g_free(text);
    return length;
}

}  // namespace orvalo
