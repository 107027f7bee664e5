#include "platform/audio/lv2/LV2StatePaths.h"

#include <glib.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

namespace orvalo {

LV2StatePaths::LV2StatePaths(std::filesystem::path folder)
    : folder_(std::move(folder)), isOwn_(folder_.empty()) {}

LV2StatePaths::~LV2StatePaths() {
    if (isOwn_ && !folder_.empty()) {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
    }
}

std::filesystem::path LV2StatePaths::folder() {
    const std::scoped_lock lock(mutex_);
    if (folder_.empty()) {
        std::error_code error;
        auto made = (std::filesystem::temp_directory_path(error) / "orvalo-lv2-XXXXXX").string();
        if (error || mkdtemp(made.data()) == nullptr) {
            const int code = error ? error.value() : errno;
            g_warning("No folder for a plug-in's files: %s.",
                      std::generic_category().message(code).c_str());
        } else {
            folder_ = made;
        }
    }
    return folder_;
}

char* LV2StatePaths::make(LV2_State_Make_Path_Handle handle, const char* path) {
    const auto folder = static_cast<LV2StatePaths*>(handle)->folder();
    const auto inside = std::filesystem::path(path).lexically_normal();
    if (folder.empty() || inside.is_absolute() || inside.begin() == inside.end() ||
        *inside.begin() == "..") {
        return nullptr;
    }
    std::error_code error;
    const auto whole = folder / inside;
    std::filesystem::create_directories(whole.parent_path(), error);
    return error ? nullptr : strdup(whole.c_str());
}

char* LV2StatePaths::copy(LV2_State_Map_Path_Handle /*handle*/, const char* path) {
    return strdup(path);
}

void LV2StatePaths::release(LV2_State_Free_Path_Handle /*handle*/, char* path) {
    // Plug-ins own what they are given as memory of the C library.
    std::free(path);  // NOLINT(cppcoreguidelines-no-malloc)
}

}  // namespace orvalo
