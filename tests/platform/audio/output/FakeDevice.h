#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "platform/audio/output/OutputDevice.h"

namespace orvalo::testing {

/// Controls a FakeDevice, also while an output plays on it. Any thread.
struct FakeControls {
    std::atomic<bool> isThere{true};
    std::atomic<bool> opens{true};
    std::atomic<bool> diesWhileItOpens{false};
    std::atomic<bool> isFrozen{false};  ///< Open streams do not render.
    std::atomic<double> sampleRate{48000.0};
    std::atomic<std::uint32_t> frameCount{32};
    std::atomic<int> probeCount{0};
    std::atomic<int> openCount{0};       ///< Streams opened so far.
    std::atomic<int> liveCount{0};       ///< Streams that are open.
    std::function<void()> whileProbing;  ///< Set before use.

    /// Makes the stream that was opened last report its end.
    void endStream() const;
    void countXruns(std::uint64_t count) const;

    std::atomic<StreamFeed*> feed{nullptr};
};

/// A device without sound that renders a block about every millisecond.
class FakeDevice : public OutputDevice {
  public:
    FakeDevice(std::string name, std::shared_ptr<FakeControls> controls);

    std::string name() const override { return name_; }
    OutputFacts probe() override;
    std::unique_ptr<OutputStream> open(const OutputFacts& facts,
                                       std::shared_ptr<StreamFeed> feed) override;

  private:
    std::string name_;
    std::shared_ptr<FakeControls> controls_;
};

}  // namespace orvalo::testing
