#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "effect/dsp/Parameter.h"
#include "effect/ui/model/Host.h"

namespace orvalo::testing {

/// Records the UI's calls and the written values. A call is "write threshold", "grab ratio" or, for
/// a release, "let ratio".
class RecordingHost final : public effect::ui::Host {
  public:
    using Calls = std::vector<std::string>;

    void write(effect::Parameter parameter, float value) override {
        values.push_back(value);
        calls.push_back("write " + symbol(parameter));
    }
    void grab(effect::Parameter parameter, bool held) override {
        calls.push_back((held ? "grab " : "let ") + symbol(parameter));
    }

    void sendMidi(const std::array<std::uint8_t, 3>& message) override { sent.push_back(message); }

    Calls calls;
    std::vector<std::array<std::uint8_t, 3>> sent;
    std::vector<float> values;

  private:
    static std::string symbol(effect::Parameter parameter) {
        return effect::range(parameter).symbol;
    }
};

}  // namespace orvalo::testing
