#pragma once

#include <lv2/core/lv2.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace orvalo {

/// The feature with which a UI that may not write to `~/.lv2` has its presets written there.
inline constexpr const char* kPresetWriterURI = "urn:tessaly:audio-component#presetWriter";

/// The feature's data: functions that take a request and return 0, or refuse it.
struct LV2PresetWriterData {
    void* handle;
    /// folder: the name of the preset's bundle. values: one for each of the symbols.
    int (*write)(void* handle, const char* folder, const char* label, const char* comment,
                 std::uint32_t count, const char* const* symbols, const float* values);
    int (*remove)(void* handle, const char* folder);
};

/// What the requests become. Empty functions: the UI gets no such feature.
struct LV2PresetRequests {
    /// Values by symbol.
    using Values = std::vector<std::pair<std::string, float>>;

    std::function<void(const std::string& folder, const std::string& label,
                       const std::string& comment, const Values& values)>
        write;
    std::function<void(const std::string& folder)> remove;
};

/// The feature. Must outlive the UI.
class LV2PresetWriter {
  public:
    explicit LV2PresetWriter(LV2PresetRequests requests);
    LV2PresetWriter(const LV2PresetWriter&) = delete;
    LV2PresetWriter& operator=(const LV2PresetWriter&) = delete;

    /// Null without functions.
    const LV2_Feature* feature() const { return requests_.write ? &feature_ : nullptr; }

  private:
    const LV2PresetRequests requests_;
    LV2PresetWriterData data_;
    LV2_Feature feature_;
};

}  // namespace orvalo
