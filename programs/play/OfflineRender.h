#pragma once

#include <cstdint>
#include <memory>

#include "platform/audio/file/AVAudioFile.h"
#include "platform/audio/file/WaveFileWriter.h"
#include "programs/play/PlayOptions.h"

namespace orvalo {

/// Renders passes of a file through the effect into a wav file, as fast as it can: stereo, 32-bit
/// float, at the file's own rate, so that nothing is converted and a pass has exactly the file's
/// length. What the effect delays is cut at the start and rendered on at the end.
class OfflineRender {
  public:
    /// Opens both files; options.render names the one to write. Throws NSError, or BadOption for
    /// more frames than can be counted.
    explicit OfflineRender(const PlayOptions& options);

    /// Throws NSError without the effect or when the file cannot be written on.
    void run();

  private:
    const std::shared_ptr<AVAudioFile> file_;
    const std::int64_t frames_;  ///< To render.
    WaveFileWriter writer_;
};

}  // namespace orvalo
