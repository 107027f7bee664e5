#include "platform/audio/file/FFmpegLog.h"

#include <glib.h>

#include <array>
#include <cstdarg>

#include "platform/audio/file/FFmpegLibrary.h"

namespace orvalo {

namespace {

void logToGLib(void* source, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_WARNING) {
        return;
    }
    std::array<char, 1024> line{};
    int isLineStart = 1;
    ffmpeg().av_log_format_line2(source, level, format, arguments, line.data(), line.size(),
                                 &isLineStart);
    g_debug("FFmpeg: %s", g_strchomp(line.data()));
}

}  // namespace

void sendFFmpegLogToGLib(const FFmpegLibrary& library) {
    library.av_log_set_callback(logToGLib);
}

}  // namespace orvalo
