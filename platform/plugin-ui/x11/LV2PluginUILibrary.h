#pragma once

#include "platform/plugin-ui/x11/LV2PluginUIData.h"

namespace orvalo {

/// A UI's shared library, loaded and held for the object's life, so that what is wrong with
/// it is known, and can be said in words, before the UI is to be shown.
class LV2PluginUILibrary {
  public:
    /// Throws NSError that names the plug-in: no such file, a library that does not load, or one
    /// that does not hold the UI.
    explicit LV2PluginUILibrary(const LV2PluginUIData& data);
    ~LV2PluginUILibrary();
    LV2PluginUILibrary(const LV2PluginUILibrary&) = delete;
    LV2PluginUILibrary& operator=(const LV2PluginUILibrary&) = delete;

  private:
    void* library_;
};

}  // namespace orvalo
