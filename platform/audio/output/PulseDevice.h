#pragma once

#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

/// The default sink of the PulseAudio server (PipeWire's too) that runs already.
class PulseDevice : public OutputDevice {
  public:
    std::string name() const override { return "PulseAudio"; }
    std::string absence() const override { return absence_; }
    std::optional<OutputFacts> look() override;
    std::unique_ptr<OutputStream> open(const OutputFacts& facts,
                                       std::shared_ptr<RenderGate> gate) override;

  private:
    std::string absence_;
};

}  // namespace orvalo
