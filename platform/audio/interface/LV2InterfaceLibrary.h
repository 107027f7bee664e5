#pragma once

#include "platform/audio/interface/LV2InterfaceData.h"

namespace orvalo {

/// An interface's shared library, loaded and held for the object's life, so that what is wrong with
/// it is known, and can be said in words, before the interface is to be shown.
class LV2InterfaceLibrary {
  public:
    /// Throws NSError that names the plug-in: no such file, a library that does not load, or one
    /// that does not hold the interface.
    explicit LV2InterfaceLibrary(const LV2InterfaceData& data);
    ~LV2InterfaceLibrary();
    LV2InterfaceLibrary(const LV2InterfaceLibrary&) = delete;
    LV2InterfaceLibrary& operator=(const LV2InterfaceLibrary&) = delete;

  private:
    void* library_;
};

}  // namespace orvalo
