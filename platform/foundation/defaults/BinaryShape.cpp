#include "platform/foundation/defaults/BinaryShape.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform/foundation/defaults/PropertyListError.h"
#include "platform/foundation/defaults/PropertyListNode.h"

namespace orvalo {

namespace {

constexpr std::string_view kMagic = "bplist00";
constexpr std::size_t kTrailerSize = 32;

// The high half of a value's first byte.
constexpr unsigned kInteger = 0x1;
constexpr unsigned kData = 0x4;
constexpr unsigned kText = 0x5;
constexpr unsigned kWideText = 0x6;
constexpr unsigned kList = 0xA;
constexpr unsigned kSet = 0xC;
constexpr unsigned kDictionary = 0xD;
// The low half that sends to an integer behind it for the count.
constexpr unsigned kCountFollows = 0xF;

class Shape {
  public:
    explicit Shape(std::span<const std::uint8_t> bytes) : bytes_(bytes) {
        if (bytes.size() < kMagic.size() + kTrailerSize ||
            !std::equal(kMagic.begin(), kMagic.end(), bytes.begin())) {
            throw propertyListError("it is no binary property list");
        }
        end_ = bytes.size() - kTrailerSize;
        offsetSize_ = bytes[end_ + 6];
        referenceSize_ = bytes[end_ + 7];
        count_ = number(end_ + 8, 8);
        root_ = number(end_ + 16, 8);
        table_ = number(end_ + 24, 8);
        if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8 ||
            table_ < kMagic.size() || table_ > end_ || count_ > (end_ - table_) / offsetSize_) {
            fail();
        }
    }

    void check() { visit(root_, 0); }

  private:
    [[noreturn]] static void fail() { throw propertyListError("it is damaged"); }

    std::uint64_t number(std::size_t at, std::size_t size) const {
        std::uint64_t value = 0;
        for (const auto byte : bytes_.subspan(at, size)) {
            value = value << 8U | byte;
        }
        return value;
    }

    /// The number at a place, which lies before the table of offsets.
    std::uint64_t numberBeforeTable(std::size_t at, std::size_t size) const {
        if (at > table_ || size > table_ - at) {
            fail();
        }
        return number(at, size);
    }

    struct Extent {
        std::uint64_t count;
        std::size_t begin;
    };

    /// How many elements a value with a count has, and where they begin.
    Extent extent(std::size_t at, unsigned low) const {
        if (low != kCountFollows) {
            return {low, at + 1};
        }
        const auto marker = static_cast<unsigned>(numberBeforeTable(at + 1, 1));
        const auto power = marker & 0xFU;
        if (marker >> 4U != kInteger || power > 3) {
            fail();
        }
        const auto size = std::size_t{1} << power;
        return {numberBeforeTable(at + 2, size), at + 2 + size};
    }

    void visitElements(const Extent& elements, std::uint64_t each, int depth) {
        if (depth > kMostPropertyListDepth) {
            throw propertyListError("it is nested too deeply");
        }
        const auto room = elements.begin > table_ ? 0 : table_ - elements.begin;
        if (elements.count > room / (each * referenceSize_)) {
            fail();
        }
        for (std::uint64_t index = 0; index < elements.count * each; ++index) {
            visit(number(elements.begin + index * referenceSize_, referenceSize_), depth);
        }
    }

    /// width: bytes of an element.
    std::span<const std::uint8_t> content(const Extent& elements, std::size_t width) const {
        const auto room = elements.begin > table_ ? 0 : table_ - elements.begin;
        if (elements.count > room / width) {
            fail();
        }
        return bytes_.subspan(elements.begin, elements.count * width);
    }

    /// libplist ends the program at a NUL in a text.
    void checkText(const Extent& elements, std::size_t width) const {
        const auto text = content(elements, width);
        for (std::size_t at = 0; at < text.size(); at += width) {
            if (number(elements.begin + at, width) == 0) {
                throw propertyListError("a text in it is not UTF-8 or holds a NUL");
            }
        }
    }

    void visit(std::uint64_t reference, int depth) {
        if (++values_ > kMostPropertyListValues) {
            throw propertyListError("it stands for more than a million values");
        }
        if (reference >= count_) {
            fail();
        }
        const auto at = number(table_ + reference * offsetSize_, offsetSize_);
        const auto marker = static_cast<unsigned>(numberBeforeTable(at, 1));
        const auto low = marker & 0xFU;
        switch (marker >> 4U) {
            case kData:
                content(extent(at, low), 1);
                break;
            case kText:
                checkText(extent(at, low), 1);
                break;
            case kWideText:
                checkText(extent(at, low), 2);
                break;
            case kList:
            case kSet:
                visitElements(extent(at, low), 1, depth + 1);
                break;
            case kDictionary:
                visitElements(extent(at, low), 2, depth + 1);
                break;
            default:
                break;
        }
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t end_ = 0;  ///< Where the trailer begins.
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::uint64_t count_ = 0;
    std::uint64_t root_ = 0;
    std::size_t table_ = 0;
    std::uint64_t values_ = 0;
};

}  // namespace

void checkBinaryShape(std::span<const std::uint8_t> binary) {
    Shape(binary).check();
}

}  // namespace orvalo
