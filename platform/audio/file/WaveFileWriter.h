#pragma once

#include <memory>
#include <string>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

/// Writes a wav file of 32-bit floats (RF64 beyond 4 GB). Until finish() the file stands beside its
/// place as "<path>.part", so that a file of that name is lost only to a complete one; a path that
/// is no regular file (a device, a pipe) is written to directly. One thread at a time.
/// Every operation throws NSError, whose text names the path, when the file cannot be written.
class WaveFileWriter {
  public:
    WaveFileWriter(const std::string& path, const AVAudioFormat& format);
    /// Removes what is not finished.
    ~WaveFileWriter();
    WaveFileWriter(const WaveFileWriter&) = delete;
    WaveFileWriter& operator=(const WaveFileWriter&) = delete;

    /// Appends block, which has the format's channels.
    void write(const AudioBlock& block);
    /// Completes the file and puts it in its place.
    void finish();

  private:
    struct Muxer;
    [[noreturn]] void fail(int ffmpegError) const;
    void check(int ffmpegResult) const;

    const std::string path_;
    const std::string workingPath_;
    const std::unique_ptr<Muxer> muxer_;
};

}  // namespace orvalo
