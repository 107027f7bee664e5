#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"

namespace orvalo {

/// An audio file opened for reading, in any container and coding that FFmpeg reads. Frames are
/// counted as the container states them: the coder's priming and padding are cut (edit list, media
/// header, iTunSMPB), so that a file read again and again joins itself sample-exactly.
/// One thread at a time; url, length and processingFormat never change and may be read by any.
class AVAudioFile : public NSObject {
  public:
    /// Opens a file. Throws NSError, "<path>: <reason>", when it cannot be read, holds no audio
    /// stream that can be decoded, is empty, or is shorter than it states; also for more than
    /// kMaximumChannels channels and rates outside 1,000 to 768,000 Hz. The file stays open: it may
    /// be removed while it is read. Takes about a millisecond, but reads through what states no
    /// length (MP3 without its encoder's note, ADTS, fragments, Matroska).
    static std::shared_ptr<AVAudioFile> forReading(const URL& url);

    const URL& url() const;
    /// The file's rate and channels, as planar 32-bit float.
    const AVAudioFormat& processingFormat() const;
    /// Length in frames, above 0.
    std::int64_t length() const;
    /// The next frame that read() gives, 0 to length.
    std::int64_t framePosition() const;
    /// Moves there, sample-exactly: what follows is bit for bit what a straight read gives there. A
    /// position out of range counts as the nearer end. Quick to the start, onwards, and in lossless
    /// codings; else the next read() decodes from the start, since only that is exact.
    void setFramePosition(std::int64_t position);

    /// Fills buffer.frameLength frames from its start: as many as frameCapacity or the file has, 0
    /// at the end. The buffer has the processing format. Damage inside the file becomes silence of
    /// the stated length, said once per file on standard error. Never throws for damage.
    void read(AVAudioPCMBuffer& into);

    ~AVAudioFile() override;

  private:
    struct Reader;
    explicit AVAudioFile(std::unique_ptr<Reader> reader);
    std::unique_ptr<Reader> reader_;
};

}  // namespace orvalo
