#pragma once

#include <cairo.h>

#include <vector>

#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// Draws the changed parts of the scene into a picture that still holds the previous drawing. now:
/// in the clock of the scene's lights. Returns the areas that it drew.
std::vector<Rect> paintScene(cairo_t* context, const Scene& scene, double now);

}  // namespace orvalo::effect::ui
