#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/audio/lv2/LV2AudioUnit.h"

namespace orvalo {

/// The control values of a unit, by the path that plug-in UIs use. Main thread.
class UnitControls {
  public:
    enum class Condition { ready, restarting, givenUp };

    /// Of a unit in this process or in an effect service.
    static std::unique_ptr<UnitControls> of(const std::shared_ptr<LV2AudioUnit>& unit);
    virtual ~UnitControls() = default;

    virtual Condition condition() const = 0;
    /// The value of the control port of that index; while not ready, NaN.
    virtual float value(std::uint32_t port) const = 0;
    /// Sets a control input; does nothing while not ready.
    virtual void setValue(std::uint32_t port, float value) = 0;
    /// Starts an effect again that was given up.
    virtual void retry() = 0;

    /// condition() has changed. May be empty.
    std::function<void()> onCondition;
};

}  // namespace orvalo
