#include "platform/audio/file/Mp3Header.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

extern "C" {
#include <libavutil/intreadwrite.h>
}

namespace orvalo {

namespace {

using Bytes = std::span<const std::uint8_t>;

// The decoder's delay, which LAME's numbers leave out: 528 frames and one more.
constexpr std::int64_t kDecoderDelay = 529;

constexpr std::uint32_t kHasFrames = 1;
constexpr std::uint32_t kHasBytes = 2;
constexpr std::size_t kNoteBytes = 192;

std::uint32_t bigEndian(Bytes bytes, std::size_t at) {
    return AV_RB32(bytes.data() + at);
}

bool hasText(Bytes bytes, std::size_t at, std::string_view text) {
    return std::ranges::equal(bytes.subspan(at, text.size()), text);
}

// The first frame begins behind the tags, whose sizes have seven bits a byte.
std::int64_t firstFrame(const LocalFile& file) {
    std::array<std::uint8_t, 10> tag{};
    std::int64_t position = 0;
    while (file.read(position, tag) == tag.size() && hasText(tag, 0, "ID3")) {
        const bool hasFooter = (tag[5] & 0x10U) != 0;
        const auto size = (tag[6] & 0x7FU) << 21U | (tag[7] & 0x7FU) << 14U |
                          (tag[8] & 0x7FU) << 7U | (tag[9] & 0x7FU);
        position += std::int64_t{size} + (hasFooter ? 20 : 10);
    }
    return position;
}

}  // namespace

std::optional<Mp3Header> readMp3Header(const LocalFile& file) {
    Mp3Header header;
    header.start = firstFrame(file);
    std::array<std::uint8_t, kNoteBytes> bytes{};
    if (file.read(header.start, bytes) < bytes.size()) {
        return std::nullopt;
    }
    constexpr std::uint32_t kSyncAndLayer3 = 0xFFE20000;
    constexpr std::uint32_t kSyncAndLayerBits = 0xFFE60000;
    const auto frame = bigEndian(bytes, 0);
    if ((frame & kSyncAndLayerBits) != kSyncAndLayer3) {
        return std::nullopt;
    }
    const bool isVersion1 = (frame >> 19U & 3U) == 3;
    const bool isMono = (frame >> 6U & 3U) == 3;
    const std::size_t sideInformation = isVersion1 ? (isMono ? 17 : 32) : (isMono ? 9 : 17);
    const std::size_t note = 4 + sideInformation;
    const auto flags = bigEndian(bytes, note + 4);
    constexpr std::uint32_t kNeeded = kHasFrames | kHasBytes;
    if ((!hasText(bytes, note, "Xing") && !hasText(bytes, note, "Info")) ||
        (flags & kNeeded) != kNeeded) {
        return std::nullopt;
    }
    header.decodedFrames = std::int64_t{bigEndian(bytes, note + 8)} * (isVersion1 ? 1152 : 576);
    header.bytes = bigEndian(bytes, note + 12);
    // An optional table of 100 bytes, an optional number of 4, LAME's version of 9 and 12 bytes
    // more precede two numbers of 12 bits.
    const std::size_t lame =
        note + 16 + ((flags & 4U) != 0 ? 100 : 0) + ((flags & 8U) != 0 ? 4 : 0);
    const auto delays = bigEndian(bytes, lame + 21) >> 8U;
    if (header.bytes == 0 || delays == 0) {
        return std::nullopt;
    }
    header.priming = std::int64_t{delays >> 12U} + kDecoderDelay;
    header.padding = std::max<std::int64_t>(std::int64_t{delays & 0xFFFU} - kDecoderDelay, 0);
    return header;
}

}  // namespace orvalo
