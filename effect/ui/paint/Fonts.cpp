#include "effect/ui/paint/Fonts.h"

#include "effect/ui/paint/Brush.h"
#include "effect/ui/paint/CairoPointers.h"

namespace orvalo::effect::ui {

void openFonts() {
    const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1));
    const Context context(cairo_create(surface.get()));
    const Brush brush(context.get());
    for (const bool isBold : {false, true}) {
        brush.textWidth("0", {.size = 12, .colour = {}, .bold = isBold});
    }
}

}  // namespace orvalo::effect::ui
