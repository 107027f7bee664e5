#pragma once

namespace orvalo {

/// Sends FFmpeg's own log to GLib's as debug messages: what counts, the reader says in its own
/// words. The first call of the process sets it. Any thread.
void sendFFmpegLogToGLib();

}  // namespace orvalo
