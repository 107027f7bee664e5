#pragma once

#include <RtAudio.h>

#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

/// A stream through RtAudio to the default device of one system. RtAudio makes the render thread.
class RtAudioStream : public OutputStream {
  public:
    /// Opens and starts a stream with the format of facts and about its quantum. Throws NSError.
    RtAudioStream(RtAudio::Api api, const OutputFacts& facts, std::shared_ptr<StreamFeed> feed);
    ~RtAudioStream() override;
    RtAudioStream(const RtAudioStream&) = delete;
    RtAudioStream& operator=(const RtAudioStream&) = delete;

    const OutputFacts& facts() const override { return facts_; }

  private:
    struct Session;
    OutputFacts facts_;
    std::shared_ptr<Session> session_;  ///< Shared with a call into RtAudio that hangs.
};

}  // namespace orvalo
