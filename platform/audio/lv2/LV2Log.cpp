#include "platform/audio/lv2/LV2Log.h"

#include <glib.h>
#include <glib/gprintf.h>

#include <array>
#include <cstdarg>
#include <cstdio>

#include "platform/audio/lv2/LV2LogQueue.h"
#include "platform/foundation/RealTimeScope.h"

namespace orvalo {

LV2Log::LV2Log(std::string uri) : uri_(std::move(uri)), feature_{this, printText, printList} {
    LV2LogQueue::shared();  // Made here, as the render thread must not make it.
}

LV2Log::~LV2Log() {
    LV2LogQueue::shared().drain();
}

void LV2Log::write(LV2_URID type, const char* text) const {
    if (RealTimeScope::isActive()) {
        LV2LogQueue::shared().push(uri_.c_str(), type, text);
    } else {
        LV2LogQueue::write(uri_.c_str(), type, text);
    }
}

int LV2Log::printText(LV2_Log_Handle handle, LV2_URID type, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = printList(handle, type, format, arguments);
    va_end(arguments);
    return result;
}

int LV2Log::printList(LV2_Log_Handle handle, LV2_URID type, const char* format, va_list arguments) {
    const auto& log = *static_cast<const LV2Log*>(handle);
    if (RealTimeScope::isActive()) {
        std::array<char, LV2LogQueue::kLongestText> text{};
        // The list is the caller's, begun there.
        // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized)
        const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
        log.write(type, text.data());
        return length;
    }
    gchar* text = nullptr;
    const int length = g_vasprintf(&text, format, arguments);
    if (text != nullptr) {
        log.write(type, text);
    }
    g_free(text);
    return length;
}

}  // namespace orvalo
