#include "platform/audio/bridge/wire/BridgeMessages.h"

#include <array>
#include <cstring>
#include <utility>

#include "platform/audio/bridge/wire/BridgeArchive.h"

namespace orvalo::bridge {

namespace {

constexpr std::uint32_t kVersion = 0x4F520001;

template <typename Message>
std::vector<std::byte> encodeAny(const Message& message) {
    BridgeWriter writer;
    std::visit([&writer](const auto& record) { record.fields(writer); }, message);
    const Head head{
        .version = kVersion,
        .type = static_cast<std::uint32_t>(message.index()),
        .length = static_cast<std::uint32_t>(writer.bytes().size()),
    };
    std::vector<std::byte> result(sizeof(head));
    std::memcpy(result.data(), &head, sizeof(head));
    result.insert(result.end(), writer.bytes().begin(), writer.bytes().end());
    return result;
}

template <typename Message, std::size_t index>
std::optional<Message> decodeAs(std::span<const std::byte> bytes) {
    std::variant_alternative_t<index, Message> record;
    BridgeReader reader(bytes);
    record.fields(reader);
    return reader.isWhole() ? std::optional<Message>(std::move(record)) : std::nullopt;
}

template <typename Message, std::size_t... indices>
std::optional<Message> decodeAny(std::uint32_t type, std::span<const std::byte> bytes,
                                 std::index_sequence<indices...> /*all*/) {
    using Decode = std::optional<Message> (*)(std::span<const std::byte>);
    constexpr std::array<Decode, sizeof...(indices)> kDecoders{decodeAs<Message, indices>...};
    return type < kDecoders.size() ? kDecoders[type](bytes) : std::nullopt;
}

template <typename Message>
using Indices = std::make_index_sequence<std::variant_size_v<Message>>;

}  // namespace

bool Head::isSound() const {
    return version == kVersion && length <= kLongestMessage;
}

std::vector<std::byte> encode(const HostMessage& message) {
    return encodeAny(message);
}

std::vector<std::byte> encode(const ServiceMessage& message) {
    return encodeAny(message);
}

std::optional<HostMessage> decodeHostMessage(std::uint32_t type, std::span<const std::byte> bytes) {
    return decodeAny<HostMessage>(type, bytes, Indices<HostMessage>());
}

std::optional<ServiceMessage> decodeServiceMessage(std::uint32_t type,
                                                   std::span<const std::byte> bytes) {
    return decodeAny<ServiceMessage>(type, bytes, Indices<ServiceMessage>());
}

}  // namespace orvalo::bridge
