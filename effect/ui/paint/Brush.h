#pragma once

#include <cairo.h>

#include <initializer_list>
#include <string>

#include "effect/ui/model/Rect.h"
#include "effect/ui/paint/Theme.h"

namespace orvalo::effect::ui {

enum class Align : std::uint8_t { left, centre, right };

/// The style of a line of text.
struct TextStyle {
    /// In pixels.
    double size;
    Colour colour;
    Align align = Align::left;
    bool bold = false;
};

/// Restricts drawing to an area for the object's life.
class Clip {
  public:
    Clip(cairo_t* context, const Rect& area) : context_(context) {
        cairo_save(context);
        cairo_rectangle(context, area.x, area.y, area.width, area.height);
        cairo_clip(context);
    }
    ~Clip() { cairo_restore(context_); }
    Clip(const Clip&) = delete;
    Clip& operator=(const Clip&) = delete;

  private:
    cairo_t* context_;
};

/// Draws shapes and text on a cairo context, which must outlive it.
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

    /// Draws one line, vertically centred. Text that is too wide is shortened with an ellipsis.
    void text(const Rect& area, const std::string& text, const TextStyle& style) const;
    /// Draws the first text that fits, or the last one shortened.
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

/// Looks up and opens the UI's fonts, which takes some milliseconds the first time in a process.
/// Call it before a window waits for its first picture, on the UI's thread.
void openFonts();

}  // namespace orvalo::effect::ui
