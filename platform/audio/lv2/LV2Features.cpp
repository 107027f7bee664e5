#include "platform/audio/lv2/LV2Features.h"

#include <lv2/buf-size/buf-size.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>

#include <algorithm>
#include <string_view>

#include "platform/audio/lv2/URIDMap.h"

namespace orvalo {

LV2_URID_Map& LV2Features::map() {
    static LV2_URID_Map feature{&URIDMap::shared(),
                                [](LV2_URID_Map_Handle handle, const char* uri) {
                                    return static_cast<URIDMap*>(handle)->map(uri);
                                }};
    return feature;
}

LV2_URID_Unmap& LV2Features::unmap() {
    static LV2_URID_Unmap feature{&URIDMap::shared(),
                                  [](LV2_URID_Unmap_Handle handle, LV2_URID number) {
                                      return static_cast<URIDMap*>(handle)->unmap(number);
                                  }};
    return feature;
}

LV2Features::LV2Features(LV2Options& options, LV2Worker& worker, LV2Log& log, LV2StatePaths& paths)
    : map_{LV2_URID__map, &map()},
      unmap_{LV2_URID__unmap, &unmap()},
      options_{LV2_OPTIONS__options, options.options()},
      schedule_{LV2_WORKER__schedule, &worker.schedule()},
      immediateSchedule_{LV2_WORKER__schedule, &worker.immediateSchedule()},
      log_{LV2_LOG__log, &log.feature()},
      makePath_{LV2_STATE__makePath, &paths.makePath()},
      mapPath_{LV2_STATE__mapPath, &paths.mapPath()},
      freePath_{LV2_STATE__freePath, &paths.freePath()},
      boundedBlockLength_{LV2_BUF_SIZE__boundedBlockLength, nullptr},
      loadDefaultState_{LV2_STATE__loadDefaultState, nullptr},
      threadSafeRestore_{LV2_STATE__threadSafeRestore, nullptr},
      isLive_{LV2_CORE__isLive, nullptr},
      instantiation_{&map_,
                     &unmap_,
                     &options_,
                     &schedule_,
                     &log_,
                     &makePath_,
                     &mapPath_,
                     &freePath_,
                     &boundedBlockLength_,
                     &loadDefaultState_,
                     &threadSafeRestore_,
                     &isLive_,
                     nullptr},
      state_{&map_, &unmap_, &options_, &immediateSchedule_, &log_, nullptr},
      plainState_{&map_,     &unmap_,    &options_, &immediateSchedule_, &log_, &makePath_,
                  &mapPath_, &freePath_, nullptr} {}

bool LV2Features::isOffered(const std::string& uri) {
    // The last two are properties of the plug-in and need nothing from the host. No strings, which
    // a program's end would free while another thread reads them.
    static constexpr std::array<std::string_view, 14> offered{LV2_URID__map,
                                                              LV2_URID__unmap,
                                                              LV2_OPTIONS__options,
                                                              LV2_WORKER__schedule,
                                                              LV2_LOG__log,
                                                              LV2_STATE__makePath,
                                                              LV2_STATE__mapPath,
                                                              LV2_STATE__freePath,
                                                              LV2_BUF_SIZE__boundedBlockLength,
                                                              LV2_STATE__loadDefaultState,
                                                              LV2_STATE__threadSafeRestore,
                                                              LV2_CORE__isLive,
                                                              LV2_CORE__hardRTCapable,
                                                              LV2_CORE__inPlaceBroken};
    return std::find(offered.begin(), offered.end(), uri) != offered.end();
}

}  // namespace orvalo
