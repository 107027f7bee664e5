#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/audio/engine/AVAudioNode.h"
#include "platform/audio/unit/AUAudioUnit.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

/// How to load an effect; an option set. none: as platformEffectLoading() says.
enum class AudioComponentInstantiationOptions : std::uint32_t { none = 0, loadInProcess = 2 };

/// An effect as a node of the graph. Runs at the rate of its input; mapChannels() maps between its
/// channels and those of its connections where they differ.
class AVAudioUnit : public AVAudioNode {
  public:
    using InstantiationHandler =
        std::function<void(std::shared_ptr<AVAudioUnit>, std::optional<NSError>)>;

    /// Makes an instance of the first component that matches the description. Returns at once;
    /// completionHandler is called on a thread of the global queue with the unit, or with null and
    /// the error, which is also logged.
    static void instantiate(const AudioComponentDescription& with,
                            AudioComponentInstantiationOptions options,
                            InstantiationHandler completionHandler);
    /// Synchronous overload: blocks until instantiated. Throws NSError. Any thread.
    static std::shared_ptr<AVAudioUnit> instantiate(const AudioComponentDescription& with,
                                                    AudioComponentInstantiationOptions options);

    explicit AVAudioUnit(std::shared_ptr<AUAudioUnit> unit);
    ~AVAudioUnit() override;

    const std::shared_ptr<AUAudioUnit>& auAudioUnit() const { return auAudioUnit_; }

  private:
    class Kernel;

    Inputs inputs() const override { return Inputs::one; }
    AVAudioFormat derivedFormat(const AVAudioFormat* input,
                                const AVAudioFormat& engineFormat) const override;
    void prepareToRender(const AVAudioFormat* input, const AVAudioFormat& output) override;
    std::shared_ptr<RenderKernel> kernel() const override;
    std::uint32_t maximumFramesToRender() const override {
        return auAudioUnit_->maximumFramesToRender();
    }
    void setRenderingOffline(bool isOffline) override;
    void engineStarts() override { auAudioUnit_->playbackStarts(); }

    const std::shared_ptr<AUAudioUnit> auAudioUnit_;
    const std::shared_ptr<Kernel> kernel_;
};

}  // namespace orvalo
