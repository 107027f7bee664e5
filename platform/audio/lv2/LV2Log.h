#pragma once

#include <lv2/log/log.h>

#include <string>

namespace orvalo {

/// The log feature of one instance: what the plug-in says goes to GLib's log, with its URI in
/// front. Any thread; inside a RealTimeScope entries wait in a lock-free queue for a thread that
/// writes them, cut at 480 bytes, and when 256 of all instances wait, further ones are counted and
/// reported instead.
class LV2Log {
  public:
    explicit LV2Log(std::string uri);
    /// Writes what still waits. The plug-in must be gone.
    ~LV2Log();
    LV2Log(const LV2Log&) = delete;
    LV2Log& operator=(const LV2Log&) = delete;

    LV2_Log_Log& feature() { return feature_; }

    /// Logs text under one of the log extension's entry types.
    void write(LV2_URID type, const char* text) const;

  private:
    static int printText(LV2_Log_Handle handle, LV2_URID type, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    static int printList(LV2_Log_Handle handle, LV2_URID type, const char* format,
                         va_list arguments) __attribute__((format(printf, 3, 0)));

    const std::string uri_;
    LV2_Log_Log feature_;
};

}  // namespace orvalo
