#pragma once

#include <lv2/urid/urid.h>
#include <semaphore.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>

namespace orvalo {

/// The process's queue of log entries that plug-ins wrote while they rendered, and the thread that
/// writes them out.
class LV2LogQueue {
  public:
    static constexpr std::size_t kLongestText = 480;
    static constexpr std::size_t kCapacity = 256;

    static LV2LogQueue& shared();

    /// Adds an entry. uri must live until the next drain(). Lock-free, any number of threads.
    void push(const char* uri, LV2_URID type, const char* text) noexcept;
    /// Writes out everything that waits, in the calling thread.
    void drain();
    /// Writes one entry to GLib's log: errors and warnings as warnings, traces as debug messages,
    /// everything else as messages.
    static void write(const char* uri, LV2_URID type, const char* text);

    LV2LogQueue(const LV2LogQueue&) = delete;
    LV2LogQueue& operator=(const LV2LogQueue&) = delete;

  private:
    LV2LogQueue();
    ~LV2LogQueue() = default;

    // A bounded queue of many writers and one reader: a slot is free for the turn that its number
    // names, and holds the entry of the turn before when it is one higher.
    struct Slot {
        std::atomic<std::size_t> turn;
        const char* uri;
        LV2_URID type;
        std::array<char, kLongestText> text;
    };

    std::array<Slot, kCapacity> slots_{};
    std::atomic<std::size_t> next_{0};
    std::atomic<unsigned> dropped_{0};
    std::mutex reading_;
    std::size_t first_ = 0;  // The reader's.
    sem_t filled_{};
};

}  // namespace orvalo
