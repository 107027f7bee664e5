#include "platform/audio/lv2/LV2Controls.h"

#include <algorithm>

namespace orvalo {

LV2Controls::LV2Controls(const std::vector<LV2Port>& ports) : values_(ports.size()) {
    for (const auto& port : ports) {
        if (port.kind == LV2PortKind::control) {
            setValue(port.index, port.defaultValue);
            if (port.isInput) {
                inputs_.push_back(port);
            }
        }
    }
}

const LV2Port* LV2Controls::input(const std::string& symbol) const {
    const auto found = std::find_if(inputs_.begin(), inputs_.end(), [&symbol](const LV2Port& port) {
        return port.symbol == symbol;
    });
    return found == inputs_.end() ? nullptr : &*found;
}

std::vector<float> LV2Controls::inputValues() const {
    std::vector<float> values;
    for (const auto& port : inputs_) {
        values.push_back(value(port.index));
    }
    return values;
}

void LV2Controls::setInputValues(const std::vector<float>& values) {
    for (std::size_t input = 0; input < inputs_.size(); ++input) {
        setValue(inputs_[input].index, values[input]);
    }
}

void LV2Controls::setSampleRate(double sampleRate) {
    for (const auto& port : inputs_) {
        if (port.scalesWithRate) {
            const double fraction = double{value(port.index)} / sampleRate_;
            setValue(port.index, static_cast<float>(fraction * sampleRate));
        }
    }
    sampleRate_ = sampleRate;
}

}  // namespace orvalo
