#include "platform/plugin-ui/generic/UnitControls.h"

#include <limits>
#include <utility>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"

namespace orvalo {

namespace {

class LocalControls : public UnitControls {
  public:
    explicit LocalControls(std::shared_ptr<LV2LocalAudioUnit> unit) : unit_(std::move(unit)) {}

    Condition condition() const override { return Condition::ready; }
    float value(std::uint32_t port) const override { return unit_->controls().value(port); }
    void setValue(std::uint32_t port, float value) override {
        unit_->controls().setValue(port, value);
    }
    void retry() override {}

  private:
    const std::shared_ptr<LV2LocalAudioUnit> unit_;
};

class BridgedControls : public UnitControls {
  public:
    explicit BridgedControls(std::shared_ptr<BridgedAudioUnit> unit) : unit_(std::move(unit)) {
        channel().setListener([this](const PluginUIEvent& event) {
            if (const auto* ready = std::get_if<ServiceReady>(&event)) {
                audio_ = ready->audio;
                become(Condition::ready);
            } else if (std::holds_alternative<ServiceLost>(event)) {
                become(Condition::restarting);
            } else if (std::holds_alternative<ServiceGivenUp>(event)) {
                become(Condition::givenUp);
            }
        });
    }
    ~BridgedControls() override { channel().setListener({}); }

    Condition condition() const override { return condition_; }
    float value(std::uint32_t port) const override {
        return audio_ == nullptr ? std::numeric_limits<float>::quiet_NaN()
                                 : audio_->controlValues()[port].load(std::memory_order_relaxed);
    }
    void setValue(std::uint32_t port, float value) override { channel().setControl(port, value); }
    void retry() override { unit_->startAgain(); }

  private:
    PluginUIChannel& channel() const { return unit_->pluginUIChannel(); }
    void become(Condition condition) {
        condition_ = condition;
        if (condition != Condition::ready) {
            audio_ = nullptr;
        }
        if (onCondition) {
            onCondition();
        }
    }

    const std::shared_ptr<BridgedAudioUnit> unit_;
    std::shared_ptr<const SharedAudio> audio_;  // Null while not ready.
    Condition condition_ = Condition::restarting;
};

}  // namespace

std::unique_ptr<UnitControls> UnitControls::of(const std::shared_ptr<LV2AudioUnit>& unit) {
    if (auto bridged = std::dynamic_pointer_cast<BridgedAudioUnit>(unit)) {
        return std::make_unique<BridgedControls>(std::move(bridged));
    }
    return std::make_unique<LocalControls>(std::dynamic_pointer_cast<LV2LocalAudioUnit>(unit));
}

}  // namespace orvalo
