#pragma once

#include "platform/audio/lv2/LV2Library.h"
#include "platform/plugin-ui/x11/LV2PluginUIData.h"

namespace orvalo {

/// A UI's shared library, loaded for the object's life, so that an error in it is reported before
/// the UI is opened.
class LV2PluginUILibrary {
  public:
    /// Throws NSError that names the plug-in: the file is missing, does not load, or does not hold
    /// the UI.
    explicit LV2PluginUILibrary(const LV2PluginUIData& data);

  private:
    const LV2Library library_;
};

}  // namespace orvalo
