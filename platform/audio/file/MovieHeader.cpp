#include "platform/audio/file/MovieHeader.h"

#include <array>
#include <limits>
#include <span>
#include <string_view>

namespace orvalo {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::int64_t kMostHeaderBytes = std::int64_t{256} << 20;
constexpr std::size_t kMostEdits = 4096;

// Big-endian; bytes beyond the end count as 0.
std::uint64_t number(Bytes bytes, std::size_t at, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t index = 0; index < count; ++index) {
        value = value << 8U | (at + index < bytes.size() ? bytes[at + index] : 0);
    }
    return value;
}

std::uint32_t number32(Bytes bytes, std::size_t at) {
    return static_cast<std::uint32_t>(number(bytes, at, 4));
}

std::string_view kindAt(Bytes bytes, std::size_t at) {
    return {reinterpret_cast<const char*>(bytes.data()) + at, 4};
}

struct BoxSize {
    std::uint64_t header = 8;
    std::uint64_t whole = 0;
};

// The size of the box that begins with head; `available` bytes follow from its start.
BoxSize boxSize(Bytes head, std::uint64_t available) {
    BoxSize size{8, number32(head, 0)};
    if (size.whole == 1) {
        size = {16, number(head, 8, 8)};
    } else if (size.whole == 0) {
        size.whole = available;
    }
    return size;
}

// Calls visit(kind, content) for each box, up to the first damaged one.
template <typename Visit>
void forEachBox(Bytes bytes, const Visit& visit) {
    while (bytes.size() >= 8) {
        const auto size = boxSize(bytes, bytes.size());
        if (size.whole < size.header || size.whole > bytes.size()) {
            return;
        }
        visit(kindAt(bytes, 4), bytes.subspan(size.header, size.whole - size.header));
        bytes = bytes.subspan(size.whole);
    }
}

std::vector<std::uint8_t> movieBox(const LocalFile& file) {
    const auto end = file.size();
    for (std::int64_t position = 0; position < end;) {
        std::array<std::uint8_t, 16> head{};
        const auto count = file.read(position, head);
        const auto available = static_cast<std::uint64_t>(end - position);
        const auto size = boxSize(head, available);
        if (count < 8 || size.whole < size.header || size.whole > available) {
            break;
        }
        if (kindAt(head, 4) == "moov") {
            const auto bytes = static_cast<std::int64_t>(size.whole - size.header);
            if (bytes > kMostHeaderBytes) {
                break;
            }
            std::vector<std::uint8_t> movie(static_cast<std::size_t>(bytes));
            movie.resize(file.read(position + static_cast<std::int64_t>(size.header), movie));
            return movie;
        }
        position += static_cast<std::int64_t>(size.whole);
    }
    return {};
}

std::int64_t known(std::uint64_t value) {
    return value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())
               ? 0
               : static_cast<std::int64_t>(value);
}

void readMediaHeader(Bytes box, MovieHeader& header) {
    const bool isLong = number(box, 0, 1) == 1;
    header.mediaTimeScale = number32(box, isLong ? 20 : 12);
    const auto duration = number(box, isLong ? 24 : 16, isLong ? 8 : 4);
    const bool isOpen = !isLong && duration == 0xFFFFFFFFU;
    header.mediaDuration = isOpen ? 0 : known(duration);
}

void readEdits(Bytes box, MovieHeader& header) {
    const bool isLong = number(box, 0, 1) == 1;
    const std::size_t width = isLong ? 8 : 4;
    const std::size_t entry = 2 * width + 4;
    const auto count = number32(box, 4);
    for (std::size_t index = 0, at = 8; index < count && at + entry <= box.size();
         ++index, at += entry) {
        if (index == kMostEdits) {
            break;
        }
        const auto start = number(box, at + width, width);
        header.edits.push_back(
            {known(number(box, at, width)),
             isLong ? static_cast<std::int64_t>(start)
                    : std::int64_t{static_cast<std::int32_t>(static_cast<std::uint32_t>(start))}});
    }
}

}  // namespace

std::optional<MovieHeader> readMovieHeader(const LocalFile& file, std::uint32_t track) {
    const auto movie = movieBox(file);
    std::uint32_t movieTimeScale = 0;
    std::optional<MovieHeader> found;
    forEachBox(movie, [&](std::string_view kind, Bytes content) {
        if (kind == "mvhd") {
            movieTimeScale = number32(content, number(content, 0, 1) == 1 ? 20 : 12);
        }
        if (kind != "trak" || found) {
            return;
        }
        MovieHeader header;
        std::uint32_t identifier = 0;
        forEachBox(content, [&](std::string_view inner, Bytes box) {
            if (inner == "tkhd") {
                identifier = number32(box, number(box, 0, 1) == 1 ? 20 : 12);
            }
            forEachBox(inner == "mdia" || inner == "edts" ? box : Bytes{},
                       [&](std::string_view leaf, Bytes leafBox) {
                           if (leaf == "mdhd") {
                               readMediaHeader(leafBox, header);
                           } else if (leaf == "elst") {
                               readEdits(leafBox, header);
                           }
                       });
        });
        if (identifier == track && header.mediaTimeScale != 0) {
            found = header;
        }
    });
    if (found) {
        found->movieTimeScale = movieTimeScale;
    }
    return movieTimeScale == 0 ? std::nullopt : found;
}

}  // namespace orvalo
