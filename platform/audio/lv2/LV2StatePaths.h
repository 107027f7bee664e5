#pragma once

#include <lv2/state/state.h>

#include <filesystem>
#include <mutex>
#include <optional>

#include "platform/audio/lv2/ProcessFolder.h"

namespace orvalo {

/// Where the files of one unit's plug-in live while the unit does: the state extension's features
/// for making, mapping and freeing paths. Paths are kept absolute, as states are not stored beyond
/// the unit. Any thread.
class LV2StatePaths {
  public:
    /// folder: one that somebody else looks after; empty for one of its own, which goes with the
    /// object and takes what is in it along.
    explicit LV2StatePaths(std::filesystem::path folder = {});
    LV2StatePaths(const LV2StatePaths&) = delete;
    LV2StatePaths& operator=(const LV2StatePaths&) = delete;

    LV2_State_Make_Path& makePath() { return makePath_; }
    LV2_State_Map_Path& mapPath() { return mapPath_; }
    LV2_State_Free_Path& freePath() { return freePath_; }

    /// The folder, made at the first call; empty when it cannot be made.
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
