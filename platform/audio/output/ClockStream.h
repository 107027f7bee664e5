#pragma once

#include <atomic>
#include <memory>
#include <thread>

#include "platform/audio/output/OutputDevice.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"

namespace orvalo {

/// A stream without a device: a thread renders quanta by the monotonic clock and discards them.
/// Periods count from the first one, so the clock does not drift. A source that is late by less
/// than two periods catches up, as on a device of three buffers; otherwise the missed periods count
/// as xruns and are left out.
class ClockStream : public OutputStream {
  public:
    /// facts.frameCount: above 0.
    ClockStream(const OutputFacts& facts, std::shared_ptr<StreamFeed> feed);
    ~ClockStream() override;
    ClockStream(const ClockStream&) = delete;
    ClockStream& operator=(const ClockStream&) = delete;

    const OutputFacts& facts() const override { return facts_; }

  private:
    void run();

    OutputFacts facts_;
    std::shared_ptr<StreamFeed> feed_;
    AVAudioPCMBuffer discarded_;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

}  // namespace orvalo
