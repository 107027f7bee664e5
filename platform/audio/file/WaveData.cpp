#include "platform/audio/file/WaveData.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <string_view>

extern "C" {
#include <libavutil/intreadwrite.h>
}

namespace orvalo {

namespace {

using Bytes = std::span<const std::uint8_t>;

// More chunks than any writer puts before the data.
constexpr int kMostChunks = 1000;

std::string_view textAt(Bytes bytes, std::size_t at) {
    return {reinterpret_cast<const char*>(bytes.data()) + at, 4};
}

// The layout of chunks in RIFF and RF64, and in W64.
struct Layout {
    std::uint64_t firstChunk;
    std::size_t nameBytes;  // W64 has 16; the first four tell chunks apart.
    std::size_t sizeBytes;
    bool isHeaderCounted;  // The chunk's size includes its header.
    std::uint64_t alignment;
};

constexpr Layout kRiff{12, 4, 4, false, 2};
constexpr Layout kWave64{40, 16, 8, true, 8};

}  // namespace

std::optional<std::uint64_t> missingWaveBytes(const LocalFile& file) {
    std::array<std::uint8_t, 32> head{};
    if (file.read(0, head) < head.size()) {
        return std::nullopt;
    }
    const auto kind = textAt(head, 0);
    const auto layout = kind == "riff" ? kWave64 : kRiff;
    if (kind != "RIFF" && kind != "RF64" && kind != "riff") {
        return std::nullopt;
    }
    const auto end = static_cast<std::uint64_t>(file.size());
    const std::size_t headerBytes = layout.nameBytes + layout.sizeBytes;
    std::uint64_t longSize = 0;
    std::uint64_t position = layout.firstChunk;
    for (int count = 0; count < kMostChunks && position < end; ++count) {
        if (file.read(static_cast<std::int64_t>(position), head) < headerBytes) {
            break;
        }
        const auto* sizeField = head.data() + layout.nameBytes;
        std::uint64_t size = layout.sizeBytes == 8 ? AV_RL64(sizeField) : AV_RL32(sizeField);
        if (layout.isHeaderCounted && size >= headerBytes) {
            size -= headerBytes;
        }
        if (textAt(head, 0) == "data") {
            const bool isOpen = size == 0 || size == std::numeric_limits<std::uint32_t>::max() ||
                                size == std::numeric_limits<std::uint64_t>::max();
            size = isOpen ? longSize : size;
            const auto held = end - std::min(position + headerBytes, end);
            return size == 0 ? std::nullopt
                             : std::optional<std::uint64_t>(size > held ? size - held : 0);
        }
        if (kind == "RF64" && textAt(head, 0) == "ds64") {
            longSize = AV_RL64(head.data() + 16);
        }
        if (size > end) {
            break;
        }
        position +=
            headerBytes + (size + layout.alignment - 1) / layout.alignment * layout.alignment;
    }
    return std::nullopt;
}

}  // namespace orvalo
