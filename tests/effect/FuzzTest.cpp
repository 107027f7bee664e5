#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "effect/dsp/Parameter.h"
#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

/// Runs the plug-in with random samples, controls, messages and block lengths.
class Fuzzer {
  public:
    explicit Fuzzer(std::uint32_t seed)
        : random_(seed),
          host_({.rate = rate(), .midiRoom = 16 + below(400), .hasSideChain = true}) {}

    void run(int blocks) {
        host_.activate();
        for (int i = 0; i < blocks && !testing::Test::HasFatalFailure(); ++i) {
            block();
        }
    }

  private:
    std::uint32_t below(std::uint32_t limit) {
        return static_cast<std::uint32_t>(random_() % limit);
    }

    double rate() { return 8000.0 * std::pow(48.0, below(1000) / 1000.0); }

    float anyFloat() {
        switch (below(8)) {
            case 0:
                return std::numeric_limits<float>::quiet_NaN();
            case 1:
                return std::numeric_limits<float>::infinity();
            case 2:
                return -1e38F;
            case 3:
                return 1e-42F;
            default: {
                const auto bits = static_cast<std::uint32_t>(random_());
                float value = 0.0F;
                std::memcpy(&value, &bits, sizeof value);
                return value;
            }
        }
    }

    float sample() {
        const float plain = static_cast<float>(below(20001)) / 10000.0F - 1.0F;
        return below(50) == 0 ? anyFloat() : plain;
    }

    void turnKnob() {
        const auto& range =
            orvalo::effect::parameterRanges.at(below(orvalo::effect::parameterCount));
        const float share = static_cast<float>(below(1001)) / 1000.0F;
        host_.control(range.symbol) =
            below(6) == 0 ? anyFloat() : range.minimum + share * (range.maximum - range.minimum);
    }

    void sendMessages(std::uint32_t frames) {
        host_.midiIn().clear();
        std::int64_t frame = -1;
        for (std::uint32_t left = below(20); left > 0; --left) {
            frame += below(frames / 8 + 2);
            std::array<std::uint8_t, 8> bytes{};
            for (auto& byte : bytes) {
                byte = static_cast<std::uint8_t>(below(256));
            }
            const std::array<std::uint8_t, 4> kinds{0x80, 0x90, 0x90, 0xB0};
            if (below(3) != 0) {
                bytes[0] = static_cast<std::uint8_t>(kinds.at(below(4)) | below(16));
                bytes[1] &= 0x7F;
                bytes[2] &= 0x7F;
            }
            host_.midiIn().append(frame, bytes.data(), below(4) == 0 ? below(9) : 3);
        }
        if (below(4) == 0) {
            host_.midiIn().appendPosition(frame, {{"beat", static_cast<double>(anyFloat())},
                                                  {"beatsPerMinute", below(400)},
                                                  {"speed", below(3) - 1.0}});
        }
        if (below(30) == 0) {
            // A sequence whose stated size exceeds its events.
            host_.midiIn().data()->atom.size -=
                std::min(host_.midiIn().data()->atom.size, below(40));
        }
    }

    void block() {
        const std::uint32_t frames = below(4) == 0 ? below(5000) : below(130);
        Stereo signal = steady(frames, 0.0F);
        for (std::size_t i = 0; i < frames; ++i) {
            signal.left[i] = sample();
            signal.right[i] = sample();
        }
        for (std::uint32_t turns = below(4); turns > 0; --turns) {
            turnKnob();
        }
        sendMessages(frames);
        Stereo side = signal;
        for (float& value : side.left) {
            value = sample();
        }
        const bool isConnected = below(3) != 0;
        host_.connectSideChain(isConnected ? side.left.data() : nullptr,
                               isConnected ? side.right.data() : nullptr);
        if (below(100) == 0) {
            host_.deactivate();
            host_.activate();
        }
        host_.run(signal.left.data(), signal.right.data(), signal.left.data(), signal.right.data(),
                  frames);
        checkBlock(signal, frames);
    }

    void checkBlock(const Stereo& output, std::uint32_t frames) {
        for (std::size_t i = 0; i < frames; ++i) {
            ASSERT_TRUE(std::isfinite(output.left[i]) && std::isfinite(output.right[i])) << i;
        }
        for (const char* meter :
             {"gain_reduction", "ducking", "input_level", "output_level", "true_peak", "latency"}) {
            ASSERT_TRUE(std::isfinite(host_.control(meter))) << meter;
        }
        std::int64_t last = 0;
        for (const auto& message : host_.midiOut().messages(0)) {
            ASSERT_GE(message.frame, last);
            ASSERT_LT(message.frame, frames);
            last = message.frame;
            ASSERT_EQ(message.bytes.size(), 3U);
            const bool isOn = (message.bytes[0] & 0xF0) == 0x90;
            ASSERT_EQ(isOn, sounding_ == 0) << "a note on, then its note off";
            const int note = (message.bytes[0] & 0x0F) << 8 | message.bytes[1];
            if (!isOn) {
                ASSERT_EQ(note + 1, sounding_);
            }
            sounding_ = isOn ? note + 1 : 0;
        }
    }

    std::mt19937 random_;
    EffectHost host_;
    int sounding_ = 0;
};

TEST(Fuzz, AnyInputGivesFiniteSoundAndPairedNotes) {
    // Run more seeds by hand with this variable.
    const char* asked = std::getenv("ORVALO_EFFECT_FUZZ_SEEDS");
    const int seeds = asked == nullptr ? 12 : std::atoi(asked);  // NOLINT(cert-err34-c)
    for (int seed = 1; seed <= seeds && !testing::Test::HasFatalFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Fuzzer(static_cast<std::uint32_t>(seed)).run(150);
    }
}

}  // namespace
