#pragma once

#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

/// The default sink of the PulseAudio server (or PipeWire's) that already runs.
class PulseDevice : public OutputDevice {
  public:
    std::string name() const override { return "PulseAudio"; }
    OutputFacts probe() override;
    std::unique_ptr<OutputStream> open(const OutputFacts& facts,
                                       std::shared_ptr<StreamFeed> feed) override;
};

}  // namespace orvalo
