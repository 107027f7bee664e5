#pragma once

#include <cstdint>
#include <string>

#include "platform/audio/lv2/LV2Error.h"

namespace orvalo {

/// A shared library of plug-ins or of their UIs, loaded for the object's life. Gives the reason of
/// a failure, where lilv and suil only report that there was one.
class LV2Library {
  public:
    /// Throws the error that `makeError` makes of the plug-in's URI and the reason: no such file,
    /// or a library that does not load. staysLoaded: the library is not unloaded with the object.
    LV2Library(const std::string& plugin, const std::string& path,
               LV2MakeError makeError = lv2Error, bool staysLoaded = false);
    ~LV2Library();
    LV2Library(const LV2Library&) = delete;
    LV2Library& operator=(const LV2Library&) = delete;

    /// Whether the library has a function of that name.
    bool has(const char* function) const { return find(function) != nullptr; }
    /// Whether the library's function `entry` returns a Descriptor of that URI for some index.
    template <typename Descriptor>
    bool lists(const char* entry, const std::string& uri) const {
        const auto at = reinterpret_cast<const Descriptor* (*)(std::uint32_t)>(find(entry));
        // Against a library that returns a descriptor for every index.
        constexpr std::uint32_t maximum = 65536;
        for (std::uint32_t index = 0; at != nullptr && index < maximum; ++index) {
            const Descriptor* descriptor = at(index);
            if (descriptor == nullptr) {
                return false;
            }
            if (descriptor->URI != nullptr && descriptor->URI == uri) {
                return true;
            }
        }
        return false;
    }

  private:
    void* find(const char* function) const;

    void* library_ = nullptr;
};

}  // namespace orvalo
