#pragma once

#include <cairo.h>

#include <memory>

namespace orvalo::effect::ui {

struct CairoDestroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, CairoDestroy>;
using Context = std::unique_ptr<cairo_t, CairoDestroy>;

}  // namespace orvalo::effect::ui
