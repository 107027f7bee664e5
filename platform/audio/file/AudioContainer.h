#pragma once

#include <cstdint>

#include "platform/audio/file/FFmpeg.h"
#include "platform/audio/file/LocalFile.h"

namespace orvalo {

/// The packets of a file's first audio stream, from its start. Opens no other file that the
/// container refers to. One thread at a time.
class AudioContainer {
  public:
    /// file must outlive the container. Throws NSError when it is empty, of no known kind, or has
    /// no audio stream.
    explicit AudioContainer(const LocalFile& file);
    ~AudioContainer();
    AudioContainer(const AudioContainer&) = delete;
    AudioContainer& operator=(const AudioContainer&) = delete;

    const LocalFile& file() const { return file_; }
    AVFormatContext& context() const { return *context_; }
    AVStream& stream() const { return *stream_; }
    /// Whether the container is of this kind, in FFmpeg's short name.
    bool isKind(const char* name) const;

    /// Replaces packet by the next one. False at the end and after too many read errors.
    bool readPacket(AVPacket& packet);
    /// Moves to the packet with this time stamp, in the stream's time base, or to an earlier one.
    bool seek(std::int64_t timeStamp);

  private:
    const LocalFile& file_;
    std::int64_t position_ = 0;
    FFmpegPointer<AVIOContext> input_;
    FFmpegPointer<AVFormatContext> context_;
    AVStream* stream_ = nullptr;

    AVFormatContext* openContext();
    static int readBytes(void* self, std::uint8_t* bytes, int count);
    static std::int64_t seekBytes(void* self, std::int64_t offset, int whence);
};

}  // namespace orvalo
