#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <map>
#include <string_view>

#include "effect/dsp/Parameter.h"
#include "tests/effect/EffectHost.h"
#include "tests/effect/EffectWorld.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::parameterRanges;

/// The controls of version 0.1 behind Enabled, in the order of their ports.
constexpr std::array<std::string_view, 13> symbols{
    "threshold",     "ratio",        "knee",        "attack",     "release",
    "makeup",        "mix",          "output",      "duck_depth", "duck_release",
    "trigger_level", "trigger_note", "midi_channel"};

struct State {
    const char* name;
    std::array<float, symbols.size()> values;
};

/// The presets of version 0.1, its defaults, and the ends of its ranges.
constexpr std::array states{
    State{
        "Default",
        {-18.0F, 4.0F, 6.0F, 10.0F, 120.0F, 4.0F, 100.0F, 0.0F, 12.0F, 200.0F, 6.0F, 36.0F, 0.0F}},
    State{
        "Acoustic Sparkle",
        {-32.0F, 6.0F, 12.0F, 4.0F, 140.0F, 11.0F, 45.0F, -2.5F, 6.0F, 250.0F, 8.0F, 60.0F, 0.0F}},
    State{
        "Bass Anchor",
        {-22.0F, 5.0F, 6.0F, 28.0F, 160.0F, 6.5F, 100.0F, -0.5F, 9.0F, 140.0F, 7.0F, 36.0F, 0.0F}},
    State{"Drum Punch",
          {-20.0F, 4.5F, 3.0F, 30.0F, 70.0F, 6.0F, 100.0F, -1.0F, 6.0F, 120.0F, 5.0F, 38.0F, 0.0F}},
    State{"Gentle Glue",
          {-14.0F, 2.0F, 9.0F, 30.0F, 220.0F, 1.5F, 100.0F, 0.0F, 6.0F, 300.0F, 2.0F, 36.0F, 0.0F}},
    State{"Kick to Note",
          {-16.0F, 8.0F, 0.0F, 1.0F, 60.0F, 3.0F, 100.0F, 0.0F, 0.0F, 100.0F, 4.0F, 36.0F, 0.0F}},
    State{
        "Lazy Leveller",
        {-28.0F, 3.0F, 18.0F, 90.0F, 900.0F, 8.0F, 100.0F, -1.0F, 9.0F, 600.0F, 6.0F, 60.0F, 0.0F}},
    State{"Night Listening",
          {-34.0F, 3.0F, 20.0F, 15.0F, 600.0F, 17.0F, 100.0F, -2.0F, 9.0F, 400.0F, 12.0F, 36.0F,
           0.0F}},
    State{"Note Gate",
          {-18.0F, 2.0F, 6.0F, 10.0F, 150.0F, 1.5F, 100.0F, 0.0F, 60.0F, 40.0F, 6.0F, 36.0F, 0.0F}},
    State{"Note Pump",
          {-20.0F, 3.0F, 6.0F, 8.0F, 120.0F, 4.0F, 100.0F, 0.0F, 24.0F, 320.0F, 6.0F, 36.0F, 0.0F}},
    State{
        "Parallel Smash",
        {-40.0F, 20.0F, 3.0F, 0.5F, 60.0F, 22.0F, 32.0F, -4.5F, 6.0F, 150.0F, 15.0F, 38.0F, 0.0F}},
    State{"Peak Catcher",
          {-6.0F, 20.0F, 1.0F, 0.1F, 45.0F, 0.0F, 100.0F, 0.0F, 6.0F, 120.0F, 2.0F, 42.0F, 0.0F}},
    State{
        "Squashed Radio",
        {-32.0F, 20.0F, 6.0F, 0.3F, 35.0F, 22.0F, 100.0F, -1.0F, 12.0F, 80.0F, 12.0F, 36.0F, 0.0F}},
    State{
        "Voice Forward",
        {-24.0F, 3.5F, 8.0F, 6.0F, 110.0F, 6.5F, 100.0F, -0.5F, 15.0F, 350.0F, 7.0F, 60.0F, 0.0F}},
    State{"Fastest",
          {-40.0F, 20.0F, 0.0F, 0.1F, 5.0F, 24.0F, 100.0F, -24.0F, 60.0F, 10.0F, 1.0F, 127.0F,
           16.0F}},
    State{"Slowest",
          {-60.0F, 20.0F, 24.0F, 200.0F, 2000.0F, 0.0F, 50.0F, 12.0F, 30.0F, 2000.0F, 30.0F, 0.0F,
           1.0F}},
    State{"Neutral",
          {0.0F, 1.0F, 0.0F, 0.1F, 5.0F, 0.0F, 0.0F, 0.0F, 0.0F, 10.0F, 6.0F, 36.0F, 0.0F}},
};

constexpr std::array<double, 4> rates{8000.0, 44100.0, 48000.0, 384000.0};

/// What version 0.1 gave for each state at each rate. The test signal is computed without the C
/// library's functions; the effect's time constants use its exponential.
const std::map<std::string, std::array<const char*, rates.size()>> recorded{
    {"Default", {"b7eb3012b6ca636e", "a794bf328382989b", "13f5b1ea92f62e9d", "e0a3bf09f00887d3"}},
    {"Acoustic Sparkle",
     {"82839ddafe5670dc", "c41557b49b3490a4", "7400bb8b14d6955e", "0ec1f90ce1da5230"}},
    {"Bass Anchor",
     {"b0bf12f1b46e4ea9", "e8ac58ee90a95a68", "174115dd975078c0", "73e0185d364f85b4"}},
    {"Drum Punch",
     {"f825755bb9766f23", "b793d5bd925b8d00", "4042b337232357a3", "9be65c97d6b4a31b"}},
    {"Gentle Glue",
     {"1f50af1f6c183597", "058a16ea9e6e1680", "c3560ba51a32459c", "a766a35c028b7e16"}},
    {"Kick to Note",
     {"93be7729805eb15d", "bff602e84155ccc1", "7fb1b991e2ad9f3d", "3ba738587568197f"}},
    {"Lazy Leveller",
     {"f0b57a4e97827123", "471af5a14ba17b8e", "102869822271f1ee", "44d17b2f49982c57"}},
    {"Night Listening",
     {"0de960278c442484", "83d8e0440f087cf9", "54b4352565230c28", "284a9f2485fd3bb8"}},
    {"Note Gate", {"a5af69dccd9e498d", "813e652f295d66a7", "20ac2a1959c650e4", "69cbf67e5cff3576"}},
    {"Note Pump", {"42eed417450fa08c", "8953e45c3fa20b1b", "e54f981447f35527", "c9d850ba45df30ed"}},
    {"Parallel Smash",
     {"e9d5bdc780bce69f", "0b42a30933614944", "ce0c79b8e18357b5", "d194e7d8a87a03f9"}},
    {"Peak Catcher",
     {"56b994cd66bc95f8", "ec6dad0205275f46", "fb20bdfaf6566489", "8b2c520e23875bfd"}},
    {"Squashed Radio",
     {"bf879d4039840646", "f1e30ac0bf310d00", "5b26b72a1214844b", "05d8208048d37dc3"}},
    {"Voice Forward",
     {"6394fa2ea000b5ea", "035fa67fdcacf62b", "3e8dd4058f01d4b4", "d6923900a293c2ec"}},
    {"Fastest", {"b6b61e7a2580f164", "e9117b5335f068db", "b5486d6f874dc430", "6234624e01aa1424"}},
    {"Slowest", {"7c6cebc6d5eda7e2", "7e3a301131b33b04", "021b107bb10e126a", "d6b3b8c7d487e970"}},
    {"Neutral", {"24d9c59b8f902e6b", "24d9c59b8f902e6b", "24d9c59b8f902e6b", "24d9c59b8f902e6b"}},
};

/// A checksum (FNV-1a, 64 bit) in hexadecimal digits.
class Checksum {
  public:
    void add(std::uint64_t value) {
        for (int byte = 0; byte < 8; ++byte) {
            sum_ = (sum_ ^ (value >> (8 * byte) & 0xFF)) * 0x100000001B3;
        }
    }
    void add(float value) { add(std::uint64_t{std::bit_cast<std::uint32_t>(value)}); }

    std::string text() const {
        std::array<char, 17> digits{};
        static_cast<void>(std::snprintf(digits.data(), digits.size(), "%016llx",
                                        static_cast<unsigned long long>(sum_)));
        return digits.data();
    }

  private:
    std::uint64_t sum_ = 0xCBF29CE484222325;
};

/// The checksum of the sound and the sent messages of a run with notes, in which the effect is
/// bypassed for a while and some controls change.
std::string checksumOf(const State& state, double rate, std::uint32_t blockFrames) {
    EffectHost host({.rate = rate});
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        host.control(std::string(symbols.at(i))) = state.values.at(i);
    }
    host.activate();
    constexpr std::size_t partFrames = 8192;
    Checksum checksum;
    for (std::uint32_t part = 0; part < 4; ++part) {
        host.control("enabled") = part == 2 ? 0.0F : 1.0F;
        if (part == 3) {
            host.control("threshold") = 0.5F * state.values[0];
            host.control("mix") = 0.5F * state.values[6];
        }
        const auto output =
            host.render(noiseBursts(partFrames, part + 1), {blockFrames},
                        {{std::int64_t{part} * 100, {0x90, 60, 100}}, {3000, {0x80, 60, 0}}});
        for (std::size_t i = 0; i < partFrames; ++i) {
            checksum.add(output.left[i]);
            checksum.add(output.right[i]);
        }
    }
    for (const auto& message : host.sent()) {
        checksum.add(static_cast<std::uint64_t>(message.frame));
        for (const auto byte : message.bytes) {
            checksum.add(std::uint64_t{byte});
        }
    }
    return checksum.text();
}

TEST(RecordedOutput, IsThatOfVersion01WithEverythingNewOff) {
    for (const auto& state : states) {
        ASSERT_TRUE(recorded.contains(state.name)) << state.name;
        for (std::size_t i = 0; i < rates.size(); ++i) {
            for (const std::uint32_t blockFrames : {64U, 100U, 8192U}) {
                EXPECT_EQ(checksumOf(state, rates.at(i), blockFrames),
                          recorded.at(state.name).at(i))
                    << state.name << " at " << rates.at(i) << " in blocks of " << blockFrames;
            }
        }
    }
}

TEST(RecordedOutput, PresetsOfVersion01LeaveTheNewControlsOff) {
    const auto presets = EffectWorld::shared().presets();
    for (const auto& state : states) {
        const auto preset = presets.find(state.name);
        // Note Pump pumps by beats now; some of the states are no presets.
        if (preset == presets.end() || preset->first == "Note Pump") {
            continue;
        }
        for (const auto& range : parameterRanges) {
            const bool isNew =
                std::find(symbols.begin(), symbols.end(), range.symbol) == symbols.end();
            if (isNew && preset->second.contains(range.symbol)) {
                EXPECT_EQ(preset->second.at(range.symbol), range.standard)
                    << state.name << ' ' << range.symbol;
            }
        }
    }
}

}  // namespace
