#pragma once

namespace orvalo {

class FFmpegLibrary;

/// Sends FFmpeg's own log to GLib's as debug messages: what counts, the reader says in its own
/// words. One thread.
void sendFFmpegLogToGLib(const FFmpegLibrary& library);

}  // namespace orvalo
