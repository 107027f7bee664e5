#pragma once

#include <lv2/urid/urid.h>

#include <map>
#include <string>

namespace orvalo::testing {

/// A host's URID map.
class UridMap {
  public:
    UridMap();
    UridMap(const UridMap&) = delete;
    UridMap& operator=(const UridMap&) = delete;

    LV2_URID operator[](const std::string& uri);
    LV2_URID_Map* map() { return &map_; }
    /// Null for a number that is not in use.
    const char* uri(LV2_URID number) const;

  private:
    std::map<std::string, LV2_URID> numbers_;
    LV2_URID_Map map_;
};

}  // namespace orvalo::testing
