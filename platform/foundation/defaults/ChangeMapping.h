#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

namespace orvalo {

/// A domain's change counter, in memory that all processes share. Even: nobody writes; odd: a write
/// is under way, or its process has died. Any thread.
class ChangeMapping {
  public:
    /// Bytes of the file that a mapping needs.
    static constexpr std::size_t size = 64;

    /// Maps a file of at least that size. Throws NSError.
    ChangeMapping(int descriptor, bool isWritable, const std::string& path);
    ~ChangeMapping();
    ChangeMapping(const ChangeMapping&) = delete;
    ChangeMapping& operator=(const ChangeMapping&) = delete;

    bool hasMagic() const { return page_->magic == kMagic; }
    std::uint64_t count() const { return page_->count.load(std::memory_order_acquire); }
    bool isWritable() const { return isWritable_; }

    /// Has all others who map the file look, where it is writable. Needs no lock: it lets an odd
    /// count be odd, and reaches no count that a write reaches.
    void haveAllLook() { page_->count.fetch_add(kFarAway, std::memory_order_acq_rel); }
    /// For the one who holds the domain's lock, where it is writable.
    void setCount(std::uint64_t count) { page_->count.store(count, std::memory_order_release); }
    /// The same: begins the file anew, at a count that it has not had.
    void initialise();

  private:
    // Even, and more than the writes of a lifetime.
    static constexpr std::uint64_t kFarAway = std::uint64_t{1} << 40U;
    static constexpr std::uint64_t kMagic = 0x3165'676e'6168'436f;  // "oChange1" in memory.

    struct Page {
        std::uint64_t magic;
        std::atomic<std::uint64_t> count;
    };
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
    static_assert(sizeof(Page) <= size);

    Page* page_;
    bool isWritable_;
};

}  // namespace orvalo
