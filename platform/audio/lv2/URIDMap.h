#pragma once

#include <lv2/urid/urid.h>

#include <array>
#include <atomic>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvalo {

/// The process's numbers for URIs, which never change. Looking up a known URI or a number is
/// lock-free; a new URI locks and allocates, so a plug-in must not map one while it renders. Any
/// thread.
class URIDMap {
  public:
    static URIDMap& shared();

    /// The URI's number, from 1; 0 when kCapacity URIs are mapped already.
    LV2_URID map(const char* uri);
    /// The number's URI; null for an unknown number.
    const char* unmap(LV2_URID number) const noexcept;

    /// All URIs in the order of their numbers.
    std::vector<std::string> uris() const;
    /// Maps the URIs of another process's map to the same numbers; false when a number is taken
    /// already.
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
    // Entries are added at the front of a bucket's chain and never change.
    std::array<std::atomic<Entry*>, kBuckets> buckets_{};
    std::array<std::atomic<const Entry*>, kCapacity> entries_{};
};

/// The option with the name of the context that a plug-in runs in.
inline constexpr const char* kContextNameURI = "urn:tessaly:audio-component#contextName";

/// The numbers of the URIs that the host uses.
struct LV2URIDs {
    LV2_URID atomBlank;
    LV2_URID atomBool;
    LV2_URID atomChunk;
    LV2_URID atomDouble;
    LV2_URID atomFloat;
    LV2_URID atomInt;
    LV2_URID atomLong;
    LV2_URID atomObject;
    LV2_URID atomSequence;
    LV2_URID atomString;
    LV2_URID atomBeatTime;
    LV2_URID logError;
    LV2_URID logTrace;
    LV2_URID logWarning;
    LV2_URID maxBlockLength;
    LV2_URID nominalBlockLength;
    LV2_URID minBlockLength;
    LV2_URID sequenceSize;
    LV2_URID sampleRate;
    LV2_URID contextName;
    LV2_URID midiEvent;
    LV2_URID stateChanged;
    LV2_URID timePosition;
    LV2_URID timeFrame;
    LV2_URID timeSpeed;

    static const LV2URIDs& shared();
};

}  // namespace orvalo
