#include "platform/audio/file/FFmpeg.h"

#include <glib.h>

#include <array>
#include <cstdarg>

#include "platform/audio/file/FileRefusal.h"

namespace orvalo {

namespace {

void logToGLib(void* source, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_WARNING) {
        return;
    }
    std::array<char, 1024> line{};
    int isLineStart = 1;
    lateFFmpeg(av_log_format_line2)(source, level, format, arguments, line.data(), line.size(),
                                    &isLineStart);
    g_debug("FFmpeg: %s", g_strchomp(line.data()));
}

}  // namespace

const LateLibrary& ffmpeg() {
    static const LateLibrary library = [] {
        const LateLibrary loaded("late-ffmpeg");
        reinterpret_cast<decltype(&av_log_set_callback)>(loaded.function("av_log_set_callback"))(
            logToGLib);
        return loaded;
    }();
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
