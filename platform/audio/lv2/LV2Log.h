#pragma once

#include <lv2/log/log.h>

#include <cstddef>
#include <string>

namespace orvalo {

/// The log feature of one plug-in: entries go to GLib's log with its URI in front. Any thread.
/// Inside a RealTimeScope an entry waits in a lock-free queue, truncated to kLongestText, for a
/// thread that writes it; entries beyond kCapacity are dropped, and a warning gives their number.
class LV2Log {
  public:
    /// Bytes of a queued entry with the closing zero.
    static constexpr std::size_t kLongestText = 480;
    /// Queued entries of all plug-ins.
    static constexpr std::size_t kCapacity = 256;

    explicit LV2Log(std::string uri);
    /// Writes the waiting entries. The plug-in must be destroyed.
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
