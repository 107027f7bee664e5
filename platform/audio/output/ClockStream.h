#pragma once

#include <atomic>
#include <memory>
#include <thread>

#include "platform/audio/output/OutputDevice.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"

namespace orvalo {

/// A stream that nothing plays: a thread pulls quanta by the monotonic clock and discards them.
/// Periods are reckoned from the first one, so that it does not drift. A source that is late by
/// less than two periods catches up, as one on a device of three buffers does; else the periods
/// that it overslept are counted as xruns and left out.
class ClockStream : public OutputStream {
  public:
    /// facts.frameCount: above 0.
    ClockStream(const OutputFacts& facts, std::shared_ptr<RenderGate> gate);
    ~ClockStream() override;
    ClockStream(const ClockStream&) = delete;
    ClockStream& operator=(const ClockStream&) = delete;

    const OutputFacts& facts() const override { return facts_; }

  private:
    void run();

    OutputFacts facts_;
    std::shared_ptr<RenderGate> gate_;
    AVAudioPCMBuffer discarded_;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

}  // namespace orvalo
