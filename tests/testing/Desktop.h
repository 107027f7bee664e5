#pragma once

#include <string>
#include <vector>

#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

/// Starts, at the first call, a virtual display with a window manager on it, and the toolkit there.
/// What the toolkit remembers goes to a folder that goes with the test.
void startDesktop();

/// The windows on the screen whose names match the regular expression, by their numbers; maybe none
/// at a moment when any window goes.
std::vector<unsigned long> windowsNamed(const std::string& name);

/// Waits for such a window; its number. Throws std::out_of_range when there never is one.
unsigned long windowNamed(const std::string& name);
/// Has the keyboard go to it.
void activateWindow(const std::string& name);

/// Lets the window that has the keyboard, and the pointer, have what a user does: the arguments of
/// xdotool.
void act(const std::vector<std::string>& arguments);

}  // namespace orvalo::testing
