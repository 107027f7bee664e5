#include <gtest/gtest.h>

#include <array>
#include <random>

#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/audio/signal/SampleRateConverter.h"
#include "platform/foundation/RealTimeScope.h"

namespace orvalo::testing {
namespace {

void convertInRealTime(const AVAudioFormat& from, const AVAudioFormat& to) {
    SampleRateConverter converter(from, to);
    const AVAudioPCMBuffer output(to, kMaximumFramesToRender);
    const AVAudioPCMBuffer input(from, 200000);
    std::mt19937 random(1);
    for (int round = 0; round < 400; ++round) {
        const auto most = round % 3 == 0 ? kMaximumFramesToRender : 128U;
        const auto frames = 1 + static_cast<std::uint32_t>(random()) % most;
        const RealTimeScope scope;
        const auto needed = converter.inputFramesNeeded(frames);
        converter.convert(input.block(needed), output.block(frames));
    }
}

TEST(ConverterRealTimeTest, ConversionNeverAllocatesOrLocks) {
    constexpr std::array rates{8000.0, 22050.0, 44100.0, 44101.0, 48000.0, 96000.0, 192000.0};
    for (const double from : rates) {
        for (const double to : rates) {
            SCOPED_TRACE(::testing::Message() << from << " to " << to);
            convertInRealTime({from, 2}, {to, 2});
        }
    }
    convertInRealTime({44100, 1}, {48000, 8});
    convertInRealTime({44100, 8}, {48000, 1});
    convertInRealTime({44100, 32}, {48000, 32});
}

}  // namespace
}  // namespace orvalo::testing
