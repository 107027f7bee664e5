#pragma once

#include <cairo.h>

#include <initializer_list>
#include <string>

#include "effect/ui/model/Rect.h"
#include "effect/ui/paint/Theme.h"

namespace orvalo::effect::ui {

enum class Align : std::uint8_t { left, centre, right };

/// How a line of text is set.
struct TextStyle {
    /// In pixels.
    double size;
    Colour colour;
    Align align = Align::left;
    bool bold = false;
};

/// Draws the shapes that the interface is made of. The context must outlive it.
class Brush {
  public:
    explicit Brush(cairo_t* context) : context_(context) {}

    cairo_t* context() const { return context_; }

    void use(const Colour& colour) const;
    void fill(const Rect& rect, const Colour& colour) const;
    void fillRound(const Rect& rect, double radius, const Colour& colour) const;
    void strokeRound(const Rect& rect, double radius, double width, const Colour& colour) const;
    void line(double x1, double y1, double x2, double y2, double width, const Colour& colour) const;
    void disc(double x, double y, double radius, const Colour& colour) const;

    /// One line, in the middle of the area's height. A text that is too wide ends in an ellipsis.
    void text(const Rect& area, const std::string& text, const TextStyle& style) const;
    /// The first of the texts that fits, the last one shortened where none does.
    void fittingText(const Rect& area, std::initializer_list<const char*> texts,
                     const TextStyle& style) const;
    double textWidth(const std::string& text, const TextStyle& style) const;

  private:
    void roundPath(const Rect& rect, double radius) const;
    void setFont(const TextStyle& style) const;
    std::string shortened(const std::string& text, double width) const;
    double measured(const std::string& text) const;

    cairo_t* context_;
};

}  // namespace orvalo::effect::ui
