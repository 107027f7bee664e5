#pragma once

#include "app/play/PlayOptions.h"

namespace orvalo {

/// Renders passes of a file through the effect into a wav file, as fast as it can: stereo, 32-bit
/// float, at the file's own rate, so that nothing is converted and a pass has exactly the file's
/// length. What the effect delays is cut at the start and rendered on at the end. Any thread but
/// the main one's run loop need not run.
/// Throws NSError: for a file that cannot be opened or written, or without the effect.
void renderOffline(const PlayOptions& options);

}  // namespace orvalo
