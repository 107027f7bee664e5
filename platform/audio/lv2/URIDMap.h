#pragma once

#include <lv2/urid/urid.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvalo {

/// The process's numbers for URIs. A number holds as long as the process. Looking up a URI that
/// has a number, and the URI of a number, are lock-free; a new URI takes a lock and memory, which a
/// plug-in must not ask for while it renders. Any thread.
class URIDMap {
  public:
    static URIDMap& shared();

    /// The URI's number, above 0. 0 when there are more than kCapacity URIs.
    LV2_URID map(const char* uri);
    /// The number's URI; null for a number that was never given.
    const char* unmap(LV2_URID number) const noexcept;

    /// All URIs so far, in the order of their numbers.
    std::vector<std::string> uris() const;
    /// Gives the URIs of another process the numbers that they had there; false when others have
    /// them already.
    bool adopt(const std::vector<std::string>& uris);

    static constexpr std::size_t kCapacity = 65536;

    URIDMap(const URIDMap&) = delete;
    URIDMap& operator=(const URIDMap&) = delete;

  private:
    URIDMap() = default;
    ~URIDMap() = default;

    struct Entry {
        std::string uri;
        LV2_URID number;
        Entry* next;
    };
    static constexpr std::size_t kBuckets = 4096;

    static const Entry* find(const Entry* from, std::string_view uri) noexcept;

    std::mutex insertion_;
    LV2_URID count_ = 0;
    // Entries are added at the front of a bucket's chain and never change or go away.
    std::array<std::atomic<Entry*>, kBuckets> buckets_{};
    std::array<std::atomic<const Entry*>, kCapacity> entries_{};
};

}  // namespace orvalo
