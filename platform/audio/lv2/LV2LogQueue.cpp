#include "platform/audio/lv2/LV2LogQueue.h"

#include <glib.h>
#include <pthread.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <thread>

#include "platform/audio/lv2/LV2URIDs.h"

namespace orvalo {

LV2LogQueue& LV2LogQueue::shared() {
    // Never destroyed: its thread and the plug-ins' end with the process only.
    static auto* queue = new LV2LogQueue;
    return *queue;
}

LV2LogQueue::LV2LogQueue() {
    for (std::size_t index = 0; index < kCapacity; ++index) {
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
        auto& slot = slots_[turn % kCapacity];
        const auto free = slot.turn.load(std::memory_order_acquire);
        if (free == turn) {
            if (next_.compare_exchange_weak(turn, turn + 1, std::memory_order_relaxed)) {
                slot.uri = uri;
                slot.type = type;
                const auto length = std::min(std::strlen(text), kLongestText - 1);
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
        auto& slot = slots_[first_ % kCapacity];
        if (slot.turn.load(std::memory_order_acquire) != first_ + 1) {
            break;
        }
        write(slot.uri, slot.type, slot.text.data());
        slot.turn.store(first_ + kCapacity, std::memory_order_release);
        ++first_;
    }
    if (const auto dropped = dropped_.exchange(0, std::memory_order_relaxed); dropped > 0) {
        g_warning("%u log entries of plug-ins are lost: they came too fast.", dropped);
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

}  // namespace orvalo
