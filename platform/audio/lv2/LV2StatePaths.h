#pragma once

#include <lv2/state/state.h>

#include <filesystem>
#include <mutex>
#include <optional>

#include "platform/audio/lv2/ProcessFolder.h"

namespace orvalo {

/// The folder for the files of one effect, with the state extension's features for making, mapping
/// and freeing paths. Paths stay absolute, as states do not outlive the effect. Any thread.
class LV2StatePaths {
  public:
    /// folder: owned by the caller; empty for a temporary one that is removed with the object.
    explicit LV2StatePaths(std::filesystem::path folder = {});
    LV2StatePaths(const LV2StatePaths&) = delete;
    LV2StatePaths& operator=(const LV2StatePaths&) = delete;

    LV2_State_Make_Path& makePath() { return makePath_; }
    LV2_State_Map_Path& mapPath() { return mapPath_; }
    LV2_State_Free_Path& freePath() { return freePath_; }

    /// The folder, made at the first call; empty, with a warning, when that fails.
    std::filesystem::path folder();

  private:
    static char* make(LV2_State_Make_Path_Handle handle, const char* path);
    static char* copy(LV2_State_Map_Path_Handle handle, const char* path);
    static void release(LV2_State_Free_Path_Handle handle, char* path);

    std::mutex mutex_;
    std::filesystem::path folder_;
    std::optional<ProcessFolder> own_;
    LV2_State_Make_Path makePath_{this, make};
    LV2_State_Map_Path mapPath_{this, copy, copy};
    LV2_State_Free_Path freePath_{this, release};
};

}  // namespace orvalo
