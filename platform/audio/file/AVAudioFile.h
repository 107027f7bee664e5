#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"

namespace orvalo {

/// An audio file open for reading, in any sound container and codec that FFmpeg reads. Its frames
/// are those that the container states: the codec's priming and padding are cut (edit list, media
/// header, iTunSMPB), so that repeated passes join sample-exactly. One thread at a time; url,
/// length and processingFormat never change, and any thread may read them.
class AVAudioFile : public NSObject {
  public:
    /// Opens a file, which may then be removed or renamed. Throws NSError, "<path>: <reason>", when
    /// it cannot be read, has no audio stream that can be decoded, is empty or shorter than it
    /// states, has more than kMaximumChannels channels, or a rate outside 1,000 to 768,000 Hz.
    /// Takes about a millisecond; a file that states no length (MP3 without a Xing header, ADTS,
    /// fragments, Matroska) is read as a whole.
    static std::shared_ptr<AVAudioFile> forReading(const URL& url);

    const URL& url() const;
    /// The file's rate and channels, as planar 32-bit float.
    const AVAudioFormat& processingFormat() const;
    /// Length in frames, above 0.
    std::int64_t length() const;
    /// The next frame to read, 0 to length.
    std::int64_t framePosition() const;
    /// Moves to this frame, clamped to the file. What follows is bit for bit what a straight read
    /// gives there: backwards in a lossy codec, the next read() decodes from the start.
    void setFramePosition(std::int64_t position);

    /// Fills the buffer, which has the processing format, and sets its frameLength: its capacity or
    /// the rest of the file, 0 at the end. Damage reads as silence of the stated length; the first
    /// of a file is logged as a warning. Does not throw.
    void read(AVAudioPCMBuffer& into);

    ~AVAudioFile() override;

  private:
    struct Reader;
    explicit AVAudioFile(std::unique_ptr<Reader> reader);
    std::unique_ptr<Reader> reader_;
};

}  // namespace orvalo
