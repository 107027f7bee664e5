#pragma once

#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

/// ALSA's default playback device.
class AlsaDevice : public OutputDevice {
  public:
    std::string name() const override { return "ALSA"; }
    OutputFacts probe() override;
    std::unique_ptr<OutputStream> open(const OutputFacts& facts,
                                       std::shared_ptr<StreamFeed> feed) override;
};

}  // namespace orvalo
