#include "platform/audio/lv2/LV2StatePaths.h"

#include <glib.h>

#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

#include "platform/foundation/NSError.h"

namespace orvalo {

LV2StatePaths::LV2StatePaths(std::filesystem::path folder) : folder_(std::move(folder)) {}

std::filesystem::path LV2StatePaths::folder() {
    const std::scoped_lock lock(mutex_);
    if (folder_.empty()) {
        try {
            folder_ = own_.emplace("orvalo-effect").path();
        } catch (const NSError& error) {
            g_warning("The effect cannot store files: %s.", error.what());
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
    // LV2 paths are allocated with malloc().
    std::free(path);  // NOLINT(cppcoreguidelines-no-malloc)
}

}  // namespace orvalo
