#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/file/AVAudioFile.h"
#include "platform/audio/file/WaveFileWriter.h"
#include "programs/play/EffectChoice.h"
#include "programs/play/PlayOptions.h"

namespace orvalo {

/// Renders passes of a file through the effect into a wav file, as fast as possible: stereo, 32-bit
/// float, at the file's sample rate, so that a pass has exactly the file's length. The effect's
/// latency is cut at the start and added at the end: the one that it reports after a second. Later
/// changes hold from the quantum in which they are reported.
class OfflineRender {
  public:
    /// Opens both files; options.render is the one to write. Throws NSError, or std::runtime_error
    /// for too many frames.
    explicit OfflineRender(const PlayOptions& options);

    /// Throws NSError when the effect is missing or the file cannot be written. Signals that end
    /// the program remove the unfinished file.
    void run(const EffectChoice& choice);

  private:
    const std::shared_ptr<AVAudioFile> file_;
    const std::int64_t frames_;  ///< To render.
    WaveFileWriter writer_;
};

}  // namespace orvalo
