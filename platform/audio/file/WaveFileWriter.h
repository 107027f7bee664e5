#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/audio/signal/AVAudioFormat.h"
#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

/// Writes a wav file of 32-bit floats (RF64 beyond 4 GB). Until finish() the file is called
/// "<path>.part", so that only a complete file replaces an earlier one; a device or pipe is written
/// directly. One thread at a time. Every operation throws NSError, which names the path, when the
/// file cannot be written.
class WaveFileWriter {
  public:
    WaveFileWriter(const std::string& path, const AVAudioFormat& format);
    /// Removes an unfinished file.
    ~WaveFileWriter();
    WaveFileWriter(const WaveFileWriter&) = delete;
    WaveFileWriter& operator=(const WaveFileWriter&) = delete;

    /// The file that holds what is written until finish(), and that the destructor otherwise
    /// removes; empty for a path that is written directly.
    const std::string& unfinishedFile() const;
    /// Throws when the process may not write a file of so many frames.
    void checkLimit(std::int64_t frames) const;
    /// Appends block, which has the format's channels.
    void write(const AudioBlock& block);
    /// Completes the file and gives it its name.
    void finish();

  private:
    struct Muxer;
    void writePiece(const AudioBlock& block);
    [[noreturn]] void fail(int ffmpegError) const;
    void check(int ffmpegResult) const;

    const std::string path_;
    const std::uint32_t frameBytes_;
    const std::string workingPath_;
    const std::unique_ptr<Muxer> muxer_;
};

}  // namespace orvalo
