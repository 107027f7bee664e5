#include "platform/audio/lv2/LV2Library.h"

#include <dlfcn.h>

#include <filesystem>

namespace orvalo {

LV2Library::LV2Library(const std::string& plugin, const std::string& path, LV2MakeError makeError,
                       bool staysLoaded) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        throw makeError(LV2ErrorCode::noLibrary, plugin, "its library " + path + " is missing");
    }
    library_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | (staysLoaded ? RTLD_NODELETE : 0));
    if (library_ == nullptr) {
        // glibc keeps the text per thread.
        const char* reason = dlerror();  // NOLINT(concurrency-mt-unsafe)
        throw makeError(LV2ErrorCode::noLibrary, plugin,
                        "its library does not load (" + std::string(reason) + ")");
    }
}

LV2Library::~LV2Library() {
    dlclose(library_);
}

void* LV2Library::find(const char* function) const {
    return dlsym(library_, function);
}

}  // namespace orvalo
