#include "Audio Engine/MIDIReport.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/foundation/RealTimeScope.h"
#include "tests/testing/MainQueue.h"

namespace orvalo::testing {
namespace {

/// Passes an event as the render thread does; its bytes are invalid afterwards.
std::int32_t deliver(const AUMIDIOutputEventBlock& handler, std::int64_t sampleTime,
                     std::int64_t length, std::vector<std::uint8_t> bytes, std::uint8_t cable = 0) {
    std::int32_t status = -1;
    std::thread([&] {
        const RealTimeScope rendering;
        status = handler(sampleTime, cable, length, bytes.data());
        std::fill(bytes.begin(), bytes.end(), std::uint8_t{0xEE});
    }).join();
    return status;
}

TEST(MIDIReport, PrintsANote) {
    const CapturedOutput output;
    EXPECT_EQ(deliver(makeMIDIReport(), 512, 3, {0x90, 60, 100}), 0);
    EXPECT_EQ(output.text(), "") << "Nothing is printed but by the main queue.";
    drainMainQueue();
    EXPECT_EQ(output.text(),
              "AUEnginePlayer: MIDI event from audio unit at: 512, data: 144, 60, 100\n");
}

TEST(MIDIReport, WarnsOfAShortEventAndPrintsIt) {
    const CapturedOutput output;
    EXPECT_EQ(deliver(makeMIDIReport(), 0, 2, {0xC1, 5, 0}), 0);
    drainMainQueue();
    EXPECT_EQ(output.text(),
              "AUEnginePlayer::WARNING: The MIDI data length is not as expected.\n"
              "AUEnginePlayer: MIDI event from audio unit at: 0, data: 193, 5, 0\n");
}

TEST(MIDIReport, ReadsThreeBytesOfALongEvent) {
    const CapturedOutput output;
    EXPECT_EQ(deliver(makeMIDIReport(), 96000, 5, {0xF0, 1, 2, 3, 0xF7}), 0);
    drainMainQueue();
    EXPECT_EQ(output.text(),
              "AUEnginePlayer::WARNING: The MIDI data length is not as expected.\n"
              "AUEnginePlayer: MIDI event from audio unit at: 96000, data: 240, 1, 2\n");
}

TEST(MIDIReport, IgnoresTheCable) {
    const CapturedOutput output;
    EXPECT_EQ(deliver(makeMIDIReport(), 1, 3, {0x80, 1, 2}, 15), 0);
    drainMainQueue();
    EXPECT_EQ(output.text(), "AUEnginePlayer: MIDI event from audio unit at: 1, data: 128, 1, 2\n");
}

TEST(MIDIReport, PrintsTheWholeRangeOfTheSampleTime) {
    const CapturedOutput output;
    deliver(makeMIDIReport(), INT64_MIN, 3, {255, 255, 255});
    deliver(makeMIDIReport(), INT64_MAX, 3, {0, 0, 0});
    drainMainQueue();
    EXPECT_EQ(output.lines(),
              Lines({"AUEnginePlayer: MIDI event from audio unit at: -9223372036854775808, data: "
                     "255, 255, 255",
                     "AUEnginePlayer: MIDI event from audio unit at: 9223372036854775807, data: "
                     "0, 0, 0"}));
}

TEST(MIDIReport, KeepsTheOrderOfEvents) {
    const CapturedOutput output;
    const auto handler = makeMIDIReport();
    Lines expected;
    for (int time = 0; time < 100; ++time) {
        deliver(handler, time, 3, {0x90, 1, 2});
        expected.push_back("AUEnginePlayer: MIDI event from audio unit at: " +
                           std::to_string(time) + ", data: 144, 1, 2");
    }
    drainMainQueue();
    EXPECT_EQ(output.lines(), expected);
}

}  // namespace
}  // namespace orvalo::testing
