#pragma once

#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

/// The playback ports of the JACK server that runs already.
class JackDevice : public OutputDevice {
  public:
    JackDevice();
    ~JackDevice() override;
    JackDevice(const JackDevice&) = delete;
    JackDevice& operator=(const JackDevice&) = delete;

    std::string name() const override { return "JACK"; }
    std::string absence() const override { return absence_; }
    std::optional<OutputFacts> look() override;
    std::unique_ptr<OutputStream> open(const OutputFacts& facts,
                                       std::shared_ptr<RenderGate> gate) override;

  private:
    struct Look;
    std::unique_ptr<Look> look_;  ///< The last one; while a server keeps it waiting, the only one.
    std::string absence_;
};

}  // namespace orvalo
