#include "platform/plugin-ui/x11/LV2PluginUILibrary.h"

#include <dlfcn.h>
#include <lv2/ui/ui.h>

#include <filesystem>

namespace orvalo {

namespace {

bool holds(void* library, const std::string& uri) {
    const auto entry =
        reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(library, "lv2ui_descriptor"));
    if (entry == nullptr) {
        return false;
    }
    // Against a library that returns a descriptor for every index.
    constexpr std::uint32_t maximum = 1024;
    for (std::uint32_t index = 0; index < maximum; ++index) {
        const auto* descriptor = entry(index);
        if (descriptor == nullptr) {
            return false;
        }
        if (descriptor->URI != nullptr && descriptor->URI == uri) {
            return true;
        }
    }
    return false;
}

}  // namespace

LV2PluginUILibrary::LV2PluginUILibrary(const LV2PluginUIData& data) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(data.binary, error)) {
        throw pluginUIError(LV2ErrorCode::noLibrary, data.plugin,
                            "its library " + data.binary + " is missing");
    }
    const int unloading = data.staysLoaded ? RTLD_NODELETE : 0;
    library_ = dlopen(data.binary.c_str(), RTLD_NOW | RTLD_LOCAL | unloading);
    if (library_ == nullptr) {
        // The text is per thread.
        const char* reason = dlerror();  // NOLINT(concurrency-mt-unsafe)
        throw pluginUIError(LV2ErrorCode::noLibrary, data.plugin,
                            "its library does not load (" + std::string(reason) + ")");
    }
    if (!holds(library_, data.uri)) {
        dlclose(library_);
        throw pluginUIError(LV2ErrorCode::noLibrary, data.plugin,
                            "the library " + data.binary + " does not hold <" + data.uri + ">");
    }
}

LV2PluginUILibrary::~LV2PluginUILibrary() {
    dlclose(library_);
}

}  // namespace orvalo
