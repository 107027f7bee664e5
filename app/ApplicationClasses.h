#pragma once

namespace orvalo {

/// Registers the classes that the layout and UIApplicationMain() name by text, and the views of
/// plug-in UIs. Main thread, once, before UIApplicationMain().
void registerApplicationClasses();

}  // namespace orvalo
