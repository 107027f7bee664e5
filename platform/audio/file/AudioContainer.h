#pragma once

#include <cstdint>

#include "platform/audio/file/FFmpeg.h"
#include "platform/audio/file/LocalFile.h"

namespace orvalo {

/// A file's container, opened at its start: its audio stream's packets in order. Reads through the
/// LocalFile alone and follows no reference to other files. One thread at a time.
class AudioContainer {
  public:
    /// The file must outlive the container. Throws NSError when it is empty, of no known kind, or
    /// without an audio stream.
    explicit AudioContainer(const LocalFile& file);
    ~AudioContainer();
    AudioContainer(const AudioContainer&) = delete;
    AudioContainer& operator=(const AudioContainer&) = delete;

    const LocalFile& file() const { return file_; }
    AVFormatContext& context() const { return *context_; }
    AVStream& stream() const { return *stream_; }
    /// Whether the container is of this kind, by FFmpeg's short name of it.
    bool isKind(const char* name) const;

    /// The audio stream's next packet into packet, which is reset first. False at the end and when
    /// nothing more can be read.
    bool readPacket(AVPacket& packet);
    /// Moves to the packet with this time stamp, in the stream's time base, or to one before it.
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
