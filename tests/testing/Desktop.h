#pragma once

#include <string>
#include <vector>

#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

/// The first call starts a virtual display with a window manager, and GTK on it. GTK's files are in
/// a temporary folder.
void startDesktop();

/// Starts the desktop with another window manager, or none where the command is empty; replaces the
/// running one.
void startDesktopWith(const std::vector<std::string>& windowManager);

/// The X numbers of the visible windows whose names match the regular expression. May miss some
/// while a window closes.
std::vector<unsigned long> windowsNamed(const std::string& name);

/// Waits for a window of that name and returns its number. Throws std::out_of_range after a minute.
unsigned long windowNamed(const std::string& name);
/// Gives the keyboard focus to a window of that name.
void activateWindow(const std::string& name);

/// Runs xdotool with these arguments: keyboard and pointer input.
void act(const std::vector<std::string>& arguments);

}  // namespace orvalo::testing
