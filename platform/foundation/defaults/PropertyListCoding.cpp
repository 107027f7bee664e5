#include "platform/foundation/defaults/PropertyListCoding.h"

#include "platform/foundation/defaults/BinaryShape.h"
#include "platform/foundation/defaults/PropertyListError.h"
#include "platform/foundation/defaults/PropertyListNode.h"

namespace orvalo {

namespace {

constexpr std::size_t kMostBytes = std::size_t{16} << 20U;

struct Binary {
    std::unique_ptr<char, Release<plist_to_bin_free>> bytes;
    std::uint32_t size;
};

Binary written(const PropertyList& value) {
    const auto node = nodeOf(value);
    char* bytes = nullptr;
    std::uint32_t size = 0;
    plist_to_bin(node.get(), &bytes, &size);
    return {decltype(Binary::bytes)(bytes), size};
}

}  // namespace

Data binaryPropertyList(const PropertyList& value) {
    const auto binary = written(value);
    if (binary.bytes == nullptr || binary.size > kMostBytes) {
        throw propertyListError("it is larger than 16 MB");
    }
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(binary.bytes.get()), binary.size);
    checkBinaryShape(bytes);
    return {bytes.begin(), bytes.end()};
}

PropertyList propertyList(std::span<const std::uint8_t> binary) {
    if (binary.size() > kMostBytes) {
        throw propertyListError("it is larger than 16 MB");
    }
    checkBinaryShape(binary);
    plist_t node = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(binary.data()),
                   static_cast<std::uint32_t>(binary.size()), &node);
    const PropertyListNode owner(node);
    if (node == nullptr) {
        throw propertyListError("it is no binary property list");
    }
    return valueOf(node);
}

}  // namespace orvalo
