#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/audio/output/RenderGate.h"
#include "platform/audio/signal/AVAudioFormat.h"

namespace orvalo {

/// What is known of a place where sound can go.
struct OutputFacts {
    AVAudioFormat format;
    std::uint32_t frameCount = 512;  ///< Frames of one quantum.
    std::string deviceName;          ///< As the sound server calls it.
};

/// A stream that pulls from its gate, from its making to the end of its life. The gate learns of
/// xruns and of the stream's end.
class OutputStream {
  public:
    /// Ends pulling; the gate is not called any more.
    virtual ~OutputStream() = default;

    /// Format and quantum as they really are.
    virtual const OutputFacts& facts() const = 0;
};

/// A way to sound: one kind of sound server or system. Control threads, one at a time.
class OutputDevice {
  public:
    virtual ~OutputDevice() = default;

    virtual std::string name() const = 0;  ///< For people, such as "JACK".
    /// Why there is nothing when look() has found nothing, as the end of a sentence.
    virtual std::string absence() const = 0;

    /// What would be opened now; nothing when it is not there. Quick, starts no server, holds
    /// nothing, though it may still be leaving the server when it returns.
    virtual std::optional<OutputFacts> look() = 0;
    /// Opens it. Throws NSError whose text is the end of a sentence, without a full stop.
    virtual std::unique_ptr<OutputStream> open(const OutputFacts& facts,
                                               std::shared_ptr<RenderGate> gate) = 0;
};

}  // namespace orvalo
