#pragma once

#include <string>

namespace orvalo {

/// Initialises the toolkit and its style library for a fast first frame. Call it before the process
/// has a second thread and before the first call of g_get_system_data_dirs(). dataFolder: the
/// folder whose subfolder "icons" has the application's icons. False when there is no display.
bool startToolkit(const std::string& dataFolder);

}  // namespace orvalo
