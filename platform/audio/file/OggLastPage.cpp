#include "platform/audio/file/OggLastPage.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

namespace orvalo {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kHeaderBytes = 27;
constexpr std::uint8_t kStartOfStream = 2;
constexpr std::uint8_t kEndOfStream = 4;
constexpr std::string_view kCapture = "OggS";

// What is looked through at either end: pages of other streams may stand there too.
constexpr std::int64_t kPartBytes = std::int64_t{1} << 20;

std::uint64_t littleEndian(Bytes bytes, std::size_t at, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t index = count; index-- > 0;) {
        value = value << 8U | bytes[at + index];
    }
    return value;
}

// The page's size, 0 when it is not wholly there.
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

// Calls visit(page) for each whole page that lies in bytes, until it returns false.
template <typename Visit>
void forEachPage(Bytes bytes, const Visit& visit) {
    while (true) {
        // Not the range's own search: clang 14 does not take it with a span.
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

std::vector<std::uint8_t> part(const LocalFile& file, std::int64_t from) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(kPartBytes));
    bytes.resize(file.read(from, bytes));
    return bytes;
}

std::uint64_t serialOf(Bytes page) {
    return littleEndian(page, 14, 4);
}

std::optional<std::uint64_t> serialOfStream(const LocalFile& file, int stream) {
    std::optional<std::uint64_t> serial;
    forEachPage(part(file, 0), [&](Bytes page) {
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
    forEachPage(part(file, std::max<std::int64_t>(file.size() - kPartBytes, 0)), [&](Bytes page) {
        if (serial && serialOf(page) == *serial && (page[5] & kEndOfStream) != 0) {
            granule = static_cast<std::int64_t>(littleEndian(page, 6, 8));
        }
        return true;
    });
    return granule;
}

}  // namespace orvalo
