#include "hosting/MyMetaEvent.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/testing/CapturedOutput.h"

namespace orvalo {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of the record that the event passes.
Bytes block(const MyMetaEvent& event) {
    Bytes bytes(static_cast<std::size_t>(event.size));
    event.withMIDIMetaEventPtr(
        [&bytes](const MIDIMetaEvent* record) { std::memcpy(bytes.data(), record, bytes.size()); });
    return bytes;
}

TEST(MyMetaEvent, WithoutDataIsTheBareRecord) {
    const MyMetaEvent event(0x2F, {});
    EXPECT_EQ(event.size, 12);
    event.withMIDIMetaEventPtr([](const MIDIMetaEvent* record) {
        EXPECT_EQ(record->metaEventType, 0x2F);
        EXPECT_EQ(record->dataLength, 0U);
    });
    EXPECT_EQ(block(event), Bytes({0x2F, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(MyMetaEvent, DataFollowsTheHeadAndTheRestIsZero) {
    const MyMetaEvent event(0x51, {7, 161, 32});
    EXPECT_EQ(event.size, 15);
    event.withMIDIMetaEventPtr([](const MIDIMetaEvent* record) {
        EXPECT_EQ(record->metaEventType, 0x51);
        EXPECT_EQ(record->dataLength, 3U);
    });
    // The length in the machine's byte order.
    const std::uint32_t length = 3;
    Bytes expected{0x51, 0, 0, 0, 0, 0, 0, 0, 7, 161, 32, 0, 0, 0, 0};
    std::memcpy(&expected[4], &length, sizeof length);
    EXPECT_EQ(block(event), expected);
}

TEST(MyMetaEvent, HoldsLongData) {
    Bytes data(100'000);
    for (std::size_t index = 0; index < data.size(); ++index) {
        data[index] = static_cast<std::uint8_t>(index * 7);
    }
    const MyMetaEvent event(0x7F, data);
    EXPECT_EQ(event.size, 100'012);
    const auto bytes = block(event);
    EXPECT_TRUE(std::equal(data.begin(), data.end(), bytes.begin() + 8));
    EXPECT_EQ(Bytes(bytes.end() - 4, bytes.end()), Bytes(4, 0));
}

TEST(MyMetaEvent, DataBeyondTheRangeOfItsLengthEndsTheProgram) {
    constexpr std::size_t most = 0xFFFFFFFF;
    EXPECT_EQ(metaDataLength(most), most);
    EXPECT_DEATH(metaDataLength(most + 1), "^Fatal error: ");
}

TEST(MyMetaEvent, CallsTheBodyOnceBeforeItReturns) {
    const MyMetaEvent event(0x01, {1});
    int calls = 0;
    event.withMIDIMetaEventPtr([&calls](const MIDIMetaEvent*) { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST(MyMetaEvent, TestFunctionPrintsNothing) {
    const testing::CapturedOutput output;
    test_MyMetaEvent();
    EXPECT_EQ(output.text(), "");
}

}  // namespace
}  // namespace orvalo
