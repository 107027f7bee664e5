#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/audio/engine/AVAudioNode.h"
#include "platform/audio/unit/AUAudioUnit.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

/// How to load an effect; a set. Empty: the platform chooses.
enum class AudioComponentInstantiationOptions : std::uint32_t { none = 0, loadInProcess = 2 };

/// An effect as a node of the graph.
class AVAudioUnit : public AVAudioNode {
  public:
    /// Makes an instance of the first component that matches the description (non-zero fields).
    /// Returns at once; completion is called on a thread of the global queue with the unit, or with
    /// an absent one and the error, which also stands on standard error.
    static void instantiate(
        const AudioComponentDescription& with, AudioComponentInstantiationOptions options,
        std::function<void(std::shared_ptr<AVAudioUnit>, std::optional<NSError>)>
            completionHandler);

    /// For instantiate() and for units made elsewhere.
    explicit AVAudioUnit(std::shared_ptr<AUAudioUnit> unit);

    const std::shared_ptr<AUAudioUnit>& auAudioUnit() const { return auAudioUnit_; }

    /// The rate of what feeds the unit, and the effect's output channels.
    AVAudioFormat outputFormat(std::int64_t forBus) const override;

  private:
    void prepareToRender(const AVAudioFormat* input, const AVAudioFormat& output) override;
    std::shared_ptr<RenderKernel> kernel() override { return kernel_; }

    class Kernel;
    std::shared_ptr<AUAudioUnit> auAudioUnit_;
    std::shared_ptr<Kernel> kernel_;
    AVAudioFormat inputFormat_;
};

}  // namespace orvalo
