#pragma once

#include <string>
#include <vector>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/Host.h"

namespace orvalo::testing {

/// Records the calls of the UI ("write threshold", "grab ratio", "let ratio") and the written
/// values.
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

    Calls calls;
    std::vector<float> values;

  private:
    static std::string symbol(effect::Parameter parameter) {
        return effect::ui::range(parameter).symbol;
    }
};

}  // namespace orvalo::testing
