#pragma once

#include <cstdint>

namespace orvalo::effect::ui {

/// The URI of a feature with which a host writes presets for a UI that may not write them itself.
inline constexpr const char* presetWriterUri = "urn:tessaly:audio-component#presetWriter";

/// The data of that feature. The functions return 0 when the host has taken the request; the change
/// shows in `~/.lv2` soon.
struct PresetWriter {
    void* handle;
    /// Writes the bundle of that name in `~/.lv2`, with one preset of the plug-in. folder: a name
    /// that ends in ".lv2". label, comment: UTF-8. values: one for each of the symbols.
    int (*write)(void* handle, const char* folder, const char* label, const char* comment,
                 std::uint32_t count, const char* const* symbols, const float* values);
    /// Removes a bundle that has only one preset of the plug-in.
    int (*remove)(void* handle, const char* folder);
};

}  // namespace orvalo::effect::ui
