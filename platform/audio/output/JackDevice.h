#pragma once

#include <future>
#include <optional>

#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

/// The playback ports of the JACK server that already runs.
class JackDevice : public OutputDevice {
  public:
    JackDevice() = default;
    ~JackDevice() override;
    JackDevice(const JackDevice&) = delete;
    JackDevice& operator=(const JackDevice&) = delete;

    std::string name() const override { return "JACK"; }
    OutputFacts probe() override;
    std::unique_ptr<OutputStream> open(const OutputFacts& facts,
                                       std::shared_ptr<StreamFeed> feed) override;

  private:
    /// A probe, which a server that hangs can leave unfinished.
    struct Probe {
        std::shared_future<OutputFacts> facts;
        std::future<void> end;
    };
    std::optional<Probe> probe_;  ///< The last probe. The next starts when this has its facts.
};

}  // namespace orvalo
