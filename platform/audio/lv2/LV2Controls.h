#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2Port.h"

namespace orvalo {

/// The values of an effect's control ports; they outlive its instances. Any thread; reading and
/// writing by index is lock-free.
class LV2Controls {
  public:
    explicit LV2Controls(const std::vector<LV2Port>& ports);

    /// The value of the control port of that index.
    float value(std::uint32_t port) const noexcept {
        return values_[port].load(std::memory_order_relaxed);
    }
    void setValue(std::uint32_t port, float value) noexcept {
        values_[port].store(value, std::memory_order_relaxed);
    }

    /// The values of all control inputs, as for setInputValues().
    std::vector<float> inputValues() const;
    void setInputValues(const std::vector<float>& values);

    /// The control input of that symbol; null without one.
    const LV2Port* input(const std::string& symbol) const;

    /// Rescales the values that are multiples of the sample rate (Hz) to a new rate.
    void setSampleRate(double sampleRate);

  private:
    std::vector<LV2Port> inputs_;
    std::vector<std::atomic<float>> values_;
    double sampleRate_ = 1.0;  // The defaults are stated as multiples of the rate.
};

}  // namespace orvalo
