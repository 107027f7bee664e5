#pragma once

#include <functional>
#include <memory>

namespace orvalo {

class LV2LocalAudioUnit;
class UIViewController;

/// Makes a view controller with the UI of a unit; absent, with a line on standard error that
/// says why, when the plug-in has none that can be shown. Called on the main thread.
using LV2PluginUIProvider =
    std::function<std::shared_ptr<UIViewController>(const std::shared_ptr<LV2LocalAudioUnit>&)>;

}  // namespace orvalo
