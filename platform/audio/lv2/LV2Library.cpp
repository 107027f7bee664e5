#include "platform/audio/lv2/LV2Library.h"

#include <dlfcn.h>
#include <lv2/core/lv2.h>

#include <filesystem>

#include "platform/audio/lv2/LV2Error.h"

namespace orvalo {

LV2Library::LV2Library(const std::string& uri, const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        throw lv2Error(LV2ErrorCode::noLibrary, uri, "its library " + path + " is missing");
    }
    library_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library_ == nullptr) {
        // glibc keeps the text per thread.
        const char* reason = dlerror();  // NOLINT(concurrency-mt-unsafe)
        throw lv2Error(LV2ErrorCode::noLibrary, uri,
                       "its library does not load (" + std::string(reason) + ")");
    }
    if (dlsym(library_, "lv2_descriptor") == nullptr &&
        dlsym(library_, "lv2_lib_descriptor") == nullptr) {
        dlclose(library_);
        throw lv2Error(LV2ErrorCode::noLibrary, uri,
                       "its library " + path + " has no lv2_descriptor");
    }
}

bool LV2Library::holds(const std::string& uri) const {
    const auto entry = reinterpret_cast<LV2_Descriptor_Function>(dlsym(library_, "lv2_descriptor"));
    if (entry == nullptr) {
        // lv2_lib_descriptor needs a bundle path and features; lilv has called it already.
        return true;
    }
    // Against a library that returns a descriptor for every index.
    constexpr std::uint32_t maximum = 65536;
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

LV2Library::~LV2Library() {
    dlclose(library_);
}

}  // namespace orvalo
