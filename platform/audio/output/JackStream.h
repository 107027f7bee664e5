#pragma once

#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

/// A client of the JACK server, connected to the playback ports of one device.
class JackStream : public OutputStream {
  public:
    /// Connects to the device of facts, with as many channels. Throws NSError.
    JackStream(const OutputFacts& facts, std::shared_ptr<StreamFeed> feed);
    ~JackStream() override;
    JackStream(const JackStream&) = delete;
    JackStream& operator=(const JackStream&) = delete;

    const OutputFacts& facts() const override { return facts_; }

  private:
    class Session;
    OutputFacts facts_;
    std::shared_ptr<Session> session_;  ///< Shared with a call into libjack that hangs.
};

}  // namespace orvalo
