#include "platform/audio/file/FFmpegLibrary.h"

#include "platform/audio/file/FFmpegLog.h"
#include "platform/audio/file/FileRefusal.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

FFmpegLibrary::FFmpegLibrary() {
    sendFFmpegLogToGLib(*this);
}

const FFmpegLibrary& ffmpeg() {
    // Tried again at the next call when it throws.
    static const FFmpegLibrary library;
    return library;
}

void loadFFmpeg(const std::string& path) {
    try {
        ffmpeg();
    } catch (const NSError& error) {
        throw refusal(FileRefusal::noLibrary, path,
                      std::string("FFmpeg cannot be loaded (") + error.what() + ")");
    }
}

}  // namespace orvalo
