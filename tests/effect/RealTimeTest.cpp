#include <gtest/gtest.h>

#include <array>

#include "effect/DetectorEvents.h"
#include "platform/foundation/RealTimeScope.h"
#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;
using orvalo::RealTimeScope;

// The real-time guard ends the program on a forbidden call.
TEST(EffectRealTime, RunMakesNoForbiddenCall) {
    EffectHost host({.hasSideChain = true});
    host.activate();
    const auto input = noiseBursts(48000);
    auto output = input;
    float& attack = host.control("attack");
    float& note = host.control("trigger_note");
    float& channel = host.control("midi_channel");
    float& enabled = host.control("enabled");
    float& makeup = host.control("makeup");
    for (const char* symbol : {"beat", "sc_source", "detector", "auto_makeup", "ceiling_on",
                               "adaptive", "stereo_mode"}) {
        host.control(symbol) = 1.0F;
    }
    host.control("threshold") = -50.0F;
    host.control("sc_highpass") = 100.0F;
    host.control("sc_lowpass") = 9000.0F;
    host.control("hold") = 20.0F;
    host.control("rms_window") = 5.0F;
    host.control("range") = 30.0F;
    host.control("mid_amount") = 80.0F;
    host.control("side_amount") = 40.0F;
    host.connectSideChain(input.right.data(), input.left.data());
    float& lookAhead = host.control("look_ahead");
    float& oversampling = host.control("oversampling");
    float& link = host.control("link");
    float& listen = host.control("sc_listen");
    float& ceilingOn = host.control("ceiling_on");
    const std::array<std::uint8_t, 3> on{0x90, 60, 100};
    const std::array<std::uint8_t, 3> off{0xB0, 123, 0};
    bool sent = false;
    bool hasSpectrum = false;
    for (std::uint32_t block = 0; block < 500; ++block) {
        const std::uint32_t start = block * 96;
        attack = 0.5F + static_cast<float>(block % 20);
        note = static_cast<float>(block / 10 % 128);
        channel = static_cast<float>(block / 50 % 3);
        makeup = static_cast<float>(block % 24);
        enabled = block % 100 < 80 ? 1.0F : 0.0F;
        lookAhead = static_cast<float>(block / 20 % 11);
        oversampling = static_cast<float>(block / 30 % 3);
        link = static_cast<float>(block / 40 % 3) * 50.0F;
        listen = block % 70 < 20 ? 1.0F : 0.0F;
        ceilingOn = block % 90 < 70 ? 1.0F : 0.0F;
        host.midiIn().clear();
        host.midiIn().appendPosition(
            0, {{"beat", block * 0.01}, {"beatsPerMinute", 120.0}, {"speed", 1.0}});
        host.midiIn().append(17, on.data(), 3);
        host.midiIn().appendObject(20, orvalo::effect::watchDetectorUri);
        host.midiIn().append(70, off.data(), 3);
        {
            const RealTimeScope renderThread;
            host.run(input.left.data() + start, input.right.data() + start,
                     output.left.data() + start, output.right.data() + start, 96);
        }
        sent = sent || !host.midiOut().messages(0).empty();
        hasSpectrum = hasSpectrum || !host.midiOut().objects().empty();
    }
    EXPECT_TRUE(sent);
    EXPECT_TRUE(hasSpectrum);
}

}  // namespace
