#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/audio/output/StreamFeed.h"
#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

/// The format, quantum and name of a device.
struct OutputFacts {
    AVAudioFormat format;
    std::uint32_t frameCount = 512;  ///< Frames of one quantum.
    std::string deviceName;          ///< As the sound server calls it.
};

/// A stream that renders its feed from its construction to its destruction. It tells the feed of
/// xruns and of the end of the stream.
class OutputStream {
  public:
    /// Ends rendering.
    virtual ~OutputStream() = default;

    /// Format and quantum of the open stream.
    virtual const OutputFacts& facts() const = 0;
};

/// One kind of sound server or system. Control threads, one at a time. Errors are NSErrors whose
/// text is the end of a sentence, without a full stop.
class OutputDevice {
  public:
    virtual ~OutputDevice() = default;

    virtual std::string name() const = 0;  ///< For people, such as "JACK".

    /// What open() would open now. Quick; starts no server and keeps nothing open, though a
    /// connection to the server may still be closing when it returns. Throws NSError when the
    /// device is absent.
    virtual OutputFacts probe() = 0;
    /// Opens the device that probe() has found, and starts its stream. Throws NSError.
    virtual std::unique_ptr<OutputStream> open(const OutputFacts& facts,
                                               std::shared_ptr<StreamFeed> feed) = 0;
};

/// The code of the error of an output that has no device.
constexpr std::int64_t kNoOutput = 1;
/// The code of the error of a device that was there and went away while it was probed or opened.
constexpr std::int64_t kDeviceWentAway = 3;

/// An error of a device that cannot be used.
inline NSError outputError(const std::string& text, std::int64_t code = 2) {
    return {"AudioOutputErrorDomain", code, text};
}

}  // namespace orvalo
