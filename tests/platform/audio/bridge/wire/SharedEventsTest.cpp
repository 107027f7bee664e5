#include "platform/audio/bridge/wire/SharedEvents.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace {

using namespace orvalo;

constexpr std::size_t kRoom = 64;

struct Event {
    std::uint32_t frame;
    int cable;
    std::string bytes;

    friend bool operator==(const Event&, const Event&) = default;
};

void PrintTo(const Event& event, std::ostream* stream) {
    *stream << event.frame << '/' << event.cable << '/' << event.bytes;
}

class SharedEvents : public ::testing::Test {
  protected:
    bool write(std::uint32_t frame, const std::string& bytes, int cable = 0) {
        return writer_.write(
            {frame, static_cast<std::uint8_t>(cable), std::as_bytes(std::span(bytes))});
    }
    std::vector<Event> read(std::uint32_t used, std::uint32_t frameCount = 100) {
        SharedEventReader reader(area_, used, frameCount, copy_);
        std::vector<Event> events;
        for (SharedEvent event; reader.read(event);) {
            events.push_back(
                {event.frame,
                 event.cable,
                 {reinterpret_cast<const char*>(event.bytes.data()), event.bytes.size()}});
        }
        SharedEvent event;
        EXPECT_FALSE(reader.read(event)) << "behind the last one";
        return events;
    }
    /// Overwrites a number in the area, as a hostile service can.
    void put(std::size_t at, std::uint32_t value) {
        std::memcpy(area_.data() + at, &value, sizeof(value));
    }

    std::array<std::byte, kRoom> area_{};
    std::array<std::byte, kRoom + 3> copy_{};
    SharedEventWriter writer_{area_};
};

TEST_F(SharedEvents, AreReadAsTheyWereWritten) {
    EXPECT_EQ(writer_.used(), 0U);
    EXPECT_TRUE(write(0, "abc"));
    EXPECT_TRUE(write(0, "d", 255));
    EXPECT_TRUE(write(99, "ef", 7));
    EXPECT_EQ(read(writer_.used()),
              (std::vector<Event>{{0, 0, "abc"}, {0, 255, "d"}, {99, 7, "ef"}}));
    EXPECT_TRUE(read(0).empty());
}

TEST_F(SharedEvents, AreWrittenWholeOrNotAtAll) {
    const auto longest = kRoom - SharedEventWriter::kHeaderSize;
    EXPECT_FALSE(write(0, ""));
    EXPECT_FALSE(write(0, std::string(longest + 1, 'x')));
    EXPECT_FALSE(write(0, std::string(10 * kRoom, 'x')));
    EXPECT_EQ(writer_.used(), 0U);
    EXPECT_TRUE(write(0, std::string(longest, 'x')));
    EXPECT_EQ(writer_.used(), kRoom);
    EXPECT_FALSE(write(0, "y"));
    EXPECT_EQ(read(kRoom), (std::vector<Event>{{0, 0, std::string(longest, 'x')}}));
}

TEST_F(SharedEvents, AreReadOnlyFromTheUsedPart) {
    write(0, "abc");
    const auto first = writer_.used();
    write(1, "def");
    EXPECT_EQ(read(first).size(), 1U);
    for (auto used = first; used < writer_.used(); ++used) {
        EXPECT_EQ(read(used).size(), 1U) << used;
    }
    for (std::uint32_t used = 0; used < first; ++used) {
        EXPECT_TRUE(read(used).empty()) << used;
    }
    EXPECT_TRUE(read(kRoom + 1).empty());
    EXPECT_TRUE(read(0xFFFFFFFFU).empty());
}

TEST_F(SharedEvents, EndAtAnInvalidLength) {
    constexpr std::size_t kLength = sizeof(std::uint32_t) + 1;
    write(0, "abc");
    const auto second = writer_.used();
    write(1, "def");
    const auto used = writer_.used();
    for (const std::uint32_t length : {0U, 4U, 100U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        put(second + kLength, length);
        EXPECT_EQ(read(used), (std::vector<Event>{{0, 0, "abc"}})) << length;
    }
    put(second + kLength, 2);
    EXPECT_EQ(read(used), (std::vector<Event>{{0, 0, "abc"}, {1, 0, "de"}}));
}

TEST_F(SharedEvents, EndAtAFrameOutsideTheQuantumOrBeforeItsPredecessor) {
    write(50, "abc");
    const auto second = writer_.used();
    write(50, "def");
    const auto used = writer_.used();
    for (const std::uint32_t frame : {0U, 49U, 100U, 0xFFFFFFFFU}) {
        put(second, frame);
        EXPECT_EQ(read(used), (std::vector<Event>{{50, 0, "abc"}})) << frame;
    }
    EXPECT_TRUE(read(used, 50).empty());
    put(second, 99);
    EXPECT_EQ(read(used).size(), 2U);
}

TEST_F(SharedEvents, AreCopiedBeforeTheyAreChecked) {
    write(0, "ab");
    copy_.fill(std::byte{9});
    SharedEventReader reader(area_, writer_.used(), 1, copy_);
    SharedEvent event;
    ASSERT_TRUE(reader.read(event));
    area_.fill(std::byte{7});
    EXPECT_EQ(event.bytes.data(), copy_.data());
    EXPECT_EQ(event.bytes[0], std::byte{'a'});
    EXPECT_EQ(event.bytes[1], std::byte{'b'});
    // The three bytes behind the message are 0.
    for (std::size_t behind = 2; behind < 5; ++behind) {
        EXPECT_EQ(copy_[behind], std::byte{0});
    }
    EXPECT_EQ(copy_[5], std::byte{9});
}

TEST_F(SharedEvents, EndAtAMessageLongerThanTheCopy) {
    write(0, "abcd");
    std::array<std::byte, 3> small{};
    SharedEventReader reader(area_, writer_.used(), 1, small);
    SharedEvent event;
    EXPECT_FALSE(reader.read(event));
}

}  // namespace
