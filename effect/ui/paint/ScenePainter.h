#pragma once

#include <cairo.h>

#include <vector>

#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// Draws the parts of the scene that have changed into a picture of the window that still holds
/// what was drawn before, at `now` in the clock of the scene's lights. Returns the areas that it
/// drew.
std::vector<Rect> paintScene(cairo_t* context, const Scene& scene, double now);

}  // namespace orvalo::effect::ui
