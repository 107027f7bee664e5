#include "platform/plugin-ui/x11/LV2PluginUILibrary.h"

#include <lv2/ui/ui.h>

namespace orvalo {

LV2PluginUILibrary::LV2PluginUILibrary(const LV2PluginUIData& data)
    : library_(data.plugin, data.binary, pluginUIError, data.staysLoaded) {
    if (!library_.lists<LV2UI_Descriptor>("lv2ui_descriptor", data.uri)) {
        throw pluginUIError(LV2ErrorCode::noLibrary, data.plugin,
                            "the library " + data.binary + " does not hold <" + data.uri + ">");
    }
}

}  // namespace orvalo
