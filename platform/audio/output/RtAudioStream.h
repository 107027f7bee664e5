#pragma once

#include <RtAudio.h>

#include <functional>
#include <memory>

#include "platform/audio/output/OutputDevice.h"
#include "platform/audio/output/Turns.h"

namespace orvalo {

/// A stream through RtAudio.
class RtAudioStream : public OutputStream {
  public:
    struct Options {
        /// Finds RtAudio's number of the device; throws NSError when it is not there any more.
        std::function<unsigned int()> deviceId = [] { return 0U; };
        RtAudioStreamFlags flags = 0;
        bool ownsRenderThread = true;  ///< RtAudio makes the render thread, not the sound server.
        /// Called between the opening and the start of the stream, with what reads the gate for as
        /// long as the stream is open.
        std::function<void(RenderGate& gate)> opened;
    };

    /// Opens and starts a stream on api, with the format of facts and about its quantum. Throws
    /// NSError. library: what all streams on such an api have in common. The functions in options
    /// are called on another thread, maybe when this has thrown already because the server did not
    /// answer: they own or share what they use.
    RtAudioStream(std::shared_ptr<RtApi> api, Turns& library, const Options& options,
                  const OutputFacts& facts, std::shared_ptr<RenderGate> gate);
    ~RtAudioStream() override;
    RtAudioStream(const RtAudioStream&) = delete;
    RtAudioStream& operator=(const RtAudioStream&) = delete;

    const OutputFacts& facts() const override { return facts_; }

  private:
    struct Session;
    Turns& library_;
    OutputFacts facts_;
    std::shared_ptr<Session> session_;
};

}  // namespace orvalo
