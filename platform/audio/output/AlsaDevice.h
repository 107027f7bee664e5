#pragma once

#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

/// ALSA's default playback device.
class AlsaDevice : public OutputDevice {
  public:
    std::string name() const override { return "ALSA"; }
    std::string absence() const override { return absence_; }
    std::optional<OutputFacts> look() override;
    std::unique_ptr<OutputStream> open(const OutputFacts& facts,
                                       std::shared_ptr<RenderGate> gate) override;

  private:
    std::string absence_;
};

}  // namespace orvalo
