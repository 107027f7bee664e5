#include "platform/audio/file/OggLastPage.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

extern "C" {
#include <libavutil/intreadwrite.h>
}

namespace orvalo {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kHeaderBytes = 27;
constexpr std::uint8_t kStartOfStream = 2;
constexpr std::uint8_t kEndOfStream = 4;
constexpr std::string_view kCapture = "OggS";

// Searched at either end of the file, where pages of other streams may lie too.
constexpr std::int64_t kPartBytes = std::int64_t{1} << 20;

// The page's size; 0 when bytes end before the page does.
std::size_t pageSize(Bytes bytes) {
    if (bytes.size() < kHeaderBytes || bytes.size() < kHeaderBytes + bytes[26]) {
        return 0;
    }
    std::size_t size = kHeaderBytes + bytes[26];
    for (const auto lacing : bytes.subspan(kHeaderBytes, bytes[26])) {
        size += lacing;
    }
    return size <= bytes.size() ? size : 0;
}

// Calls visit(page) for each whole page in bytes, until it returns false.
template <typename Visit>
void forEachPage(Bytes bytes, const Visit& visit) {
    while (true) {
        // clang 14 does not compile std::ranges::search with a span.
        bytes = Bytes(std::search(bytes.begin(), bytes.end(), kCapture.begin(), kCapture.end()),
                      bytes.end());
        if (bytes.size() < kHeaderBytes) {
            return;
        }
        const auto size = pageSize(bytes);
        if (size == 0) {
            bytes = bytes.subspan(kCapture.size());
            continue;
        }
        if (!visit(bytes.first(size))) {
            return;
        }
        bytes = bytes.subspan(size);
    }
}

std::vector<std::uint8_t> readPart(const LocalFile& file, std::int64_t from) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(kPartBytes));
    bytes.resize(file.read(from, bytes));
    return bytes;
}

std::uint32_t serialOf(Bytes page) {
    return AV_RL32(page.data() + 14);
}

std::optional<std::uint32_t> serialOfStream(const LocalFile& file, int stream) {
    std::optional<std::uint32_t> serial;
    forEachPage(readPart(file, 0), [&](Bytes page) {
        const bool isFirst = (page[5] & kStartOfStream) != 0;
        if (isFirst && stream-- == 0) {
            serial = serialOf(page);
        }
        return isFirst && !serial;
    });
    return serial;
}

}  // namespace

std::optional<std::int64_t> oggLastGranule(const LocalFile& file, int stream) {
    const auto serial = serialOfStream(file, stream);
    std::optional<std::int64_t> granule;
    forEachPage(readPart(file, std::max<std::int64_t>(file.size() - kPartBytes, 0)),
                [&](Bytes page) {
                    if (serial && serialOf(page) == *serial && (page[5] & kEndOfStream) != 0) {
                        granule = static_cast<std::int64_t>(AV_RL64(page.data() + 6));
                    }
                    return true;
                });
    return granule;
}

}  // namespace orvalo
