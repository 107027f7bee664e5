#pragma once

#include <lv2/core/lv2.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <array>
#include <string>

#include "platform/audio/lv2/LV2Log.h"
#include "platform/audio/lv2/LV2Options.h"
#include "platform/audio/lv2/LV2StatePaths.h"
#include "platform/audio/lv2/LV2Worker.h"

namespace orvalo {

/// The LV2 features for one instance. Must outlive the instance; the constructor's arguments must
/// outlive both.
class LV2Features {
  public:
    LV2Features(LV2Options& options, LV2Worker& worker, LV2Log& log, LV2StatePaths& paths);
    LV2Features(const LV2Features&) = delete;
    LV2Features& operator=(const LV2Features&) = delete;

    /// For instantiation; ends with null.
    const LV2_Feature* const* forInstantiation() const { return instantiation_.data(); }
    /// For saving and restoring state through lilv, which adds the path features; ends with null.
    /// Off the render thread.
    const LV2_Feature* const* forState() const { return state_.data(); }
    /// As forState() with the path features, for saving and restoring without lilv.
    const LV2_Feature* const* forPlainState() const { return plainState_.data(); }

    /// Whether a plug-in may require the feature of that URI.
    static bool isOffered(const std::string& uri);

    static LV2_URID_Map& map();
    static LV2_URID_Unmap& unmap();

  private:
    LV2_Feature map_;
    LV2_Feature unmap_;
    LV2_Feature options_;
    LV2_Feature schedule_;
    LV2_Feature immediateSchedule_;
    LV2_Feature log_;
    LV2_Feature makePath_;
    LV2_Feature mapPath_;
    LV2_Feature freePath_;
    LV2_Feature boundedBlockLength_;
    LV2_Feature loadDefaultState_;
    LV2_Feature threadSafeRestore_;
    LV2_Feature isLive_;
    std::array<const LV2_Feature*, 13> instantiation_;
    std::array<const LV2_Feature*, 6> state_;
    std::array<const LV2_Feature*, 9> plainState_;
};

}  // namespace orvalo
