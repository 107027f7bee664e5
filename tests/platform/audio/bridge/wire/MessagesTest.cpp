#include "platform/audio/bridge/wire/BridgeMessages.h"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/audio/bridge/wire/BridgeArchive.h"
#include "tests/platform/audio/bridge/wire/Messages.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

bridge::Head headOf(const std::vector<std::byte>& message) {
    bridge::Head head;
    std::memcpy(&head, message.data(), sizeof(head));
    return head;
}

// Overloads by message type, for the tests of both directions.
std::vector<bridge::HostMessage> messages(const bridge::HostMessage& /*side*/) {
    return hostMessages();
}
std::vector<bridge::ServiceMessage> messages(const bridge::ServiceMessage& /*side*/) {
    return serviceMessages();
}
std::optional<bridge::HostMessage> decode(const bridge::HostMessage& /*side*/, std::uint32_t type,
                                          std::span<const std::byte> bytes) {
    return bridge::decodeHostMessage(type, bytes);
}
std::optional<bridge::ServiceMessage> decode(const bridge::ServiceMessage& /*side*/,
                                             std::uint32_t type, std::span<const std::byte> bytes) {
    return bridge::decodeServiceMessage(type, bytes);
}

template <typename Message>
class BridgeMessages : public ::testing::Test {
  protected:
    const Message side_{};
    const std::vector<Message> all_ = messages(side_);

    std::optional<Message> decoded(std::uint32_t type, std::span<const std::byte> bytes) const {
        return decode(side_, type, bytes);
    }
};

using Sides = ::testing::Types<bridge::HostMessage, bridge::ServiceMessage>;
TYPED_TEST_SUITE(BridgeMessages, Sides);

TYPED_TEST(BridgeMessages, DecodeToTheSameFields) {
    ASSERT_EQ(this->all_.size(), std::variant_size_v<TypeParam>);
    for (std::size_t type = 0; type < this->all_.size(); ++type) {
        const auto bytes = bridge::encode(this->all_[type]);
        const auto head = headOf(bytes);
        EXPECT_TRUE(head.isSound());
        EXPECT_EQ(head.type, type);
        EXPECT_EQ(head.length, bytes.size() - sizeof(head));
        const auto decoded = this->decoded(head.type, bodyOf(bytes));
        ASSERT_TRUE(decoded) << type;
        EXPECT_EQ(decoded->index(), type);
        // Every byte comes from a field, so equal bytes mean equal fields.
        EXPECT_EQ(bridge::encode(*decoded), bytes);
    }
}

TYPED_TEST(BridgeMessages, AreRejectedWithAnyOtherLength) {
    for (const auto& message : this->all_) {
        const auto type = static_cast<std::uint32_t>(message.index());
        auto bytes = bodyOf(bridge::encode(message));
        const std::size_t step = bytes.size() > 1000 ? 997 : 1;
        for (std::size_t length = 0; length < bytes.size(); length += step) {
            ASSERT_FALSE(this->decoded(type, std::span(bytes).first(length)))
                << type << ' ' << length;
        }
        bytes.emplace_back();
        EXPECT_FALSE(this->decoded(type, bytes)) << type;
    }
}

TYPED_TEST(BridgeMessages, AreRejectedWithAnUnknownType) {
    const auto bytes = bodyOf(bridge::encode(this->all_[0]));
    EXPECT_FALSE(this->decoded(std::variant_size_v<TypeParam>, bytes));
    EXPECT_FALSE(this->decoded(0xFFFFFFFFU, bytes));
}

TEST(BridgeMessage, HasItsFieldsInOrder) {
    const auto bytes = bodyOf(bridge::encode(hostMessages()[0]));
    const auto message = std::get<bridge::Instantiate>(*bridge::decodeHostMessage(0, bytes));
    EXPECT_EQ(message.number, 1U);
    EXPECT_EQ(message.uri, "urn:test:effect");
    EXPECT_EQ(message.bundles, (std::vector<std::string>{"/usr/lib/lv2/a.lv2", "", "/b"}));
    EXPECT_EQ(message.stateFolder, "/state");
    EXPECT_EQ(message.contextName, "Wörk");
    EXPECT_EQ(message.sampleRate, 44100.0);
    EXPECT_EQ(message.state, std::string("a\0b", 3));
    ASSERT_EQ(message.controls.size(), 2U);
    EXPECT_EQ(message.controls[1].port, 4U);
    EXPECT_EQ(message.controls[1].value, -1.0F);
    EXPECT_EQ(message.inputChannelCount, 2U);
    EXPECT_EQ(message.outputChannelCount, 1U);
    EXPECT_EQ(message.portCount, 9U);
    EXPECT_EQ(message.preset, "urn:test:preset");
    EXPECT_EQ(message.quantum, 4096U);
}

TEST(BridgeHead, IsSoundWithThisVersionAndAnAllowedLength) {
    auto head = headOf(bridge::encode(hostMessages()[4]));
    EXPECT_TRUE(head.isSound());
    head.length = bridge::kLongestMessage;
    EXPECT_TRUE(head.isSound());
    ++head.length;
    EXPECT_FALSE(head.isSound());
    head.length = 0;
    EXPECT_TRUE(head.isSound());
    ++head.version;
    EXPECT_FALSE(head.isSound());
}

template <typename... Fields>
bool reads(const std::vector<std::byte>& bytes, Fields&... fields) {
    BridgeReader reader(bytes);
    reader(fields...);
    return reader.isWhole();
}

std::vector<std::byte> written(const auto&... fields) {
    BridgeWriter writer;
    writer(fields...);
    return writer.bytes();
}

TEST(BridgeArchive, RejectsACountThatExceedsTheRest) {
    std::string text;
    std::vector<std::string> texts;
    std::vector<double> numbers;
    for (const std::uint32_t count : {2U, 1000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        const auto bytes = written(count, std::uint8_t{1});
        EXPECT_FALSE(reads(bytes, text));
        EXPECT_FALSE(reads(bytes, texts));
        EXPECT_FALSE(reads(bytes, numbers));
    }
    // Enough bytes for the count, too few for that many elements.
    EXPECT_FALSE(reads(written(std::uint32_t{8}, 1.0), numbers));
    EXPECT_LE(numbers.size(), 8U);
    EXPECT_TRUE(reads(written(std::uint32_t{1}, 1.5), numbers));
    EXPECT_EQ(numbers, std::vector<double>{1.5});
}

TEST(BridgeArchive, KeepsTheValueOfAFieldBeyondTheEnd) {
    std::uint32_t first = 1;
    std::uint32_t second = 2;
    std::string third = "3";
    EXPECT_FALSE(reads(written(std::uint32_t{7}, std::uint8_t{1}), first, second, third));
    EXPECT_EQ(first, 7U);
    EXPECT_EQ(second, 2U);
}

TEST(BridgeArchive, RejectsABoolOtherThan0And1) {
    bool value = false;
    EXPECT_TRUE(reads(written(std::uint8_t{1}), value));
    EXPECT_TRUE(value);
    EXPECT_TRUE(reads(written(std::uint8_t{0}), value));
    EXPECT_FALSE(value);
    EXPECT_FALSE(reads(written(std::uint8_t{2}), value));
}

}  // namespace
