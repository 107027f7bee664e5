#pragma once

#include <string>

namespace orvalo {

/// Initialises the toolkit and its style library, in a way that has a window on screen soon. Before
/// there is a second thread, and before anybody has asked for the system's data folders.
/// dataFolder: where the application's own icons are, among those of "icons". False when there is
/// no display.
bool startToolkit(const std::string& dataFolder);

}  // namespace orvalo
