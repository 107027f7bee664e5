#pragma once

#include <optional>

#include "effect/ui/model/CurveDrag.h"
#include "effect/ui/model/Editor.h"
#include "effect/ui/model/Input.h"
#include "effect/ui/model/ValueMapping.h"

namespace orvalo::effect::ui {

/// Handles the pointer: dragging knobs and the curve's points, wheel, double click, values,
/// presets, pad, history and meters.
class PointerInput {
  public:
    /// The longest time between the two presses of a double click, in seconds.
    static constexpr double doubleClickSeconds = 0.4;

    PointerInput(Scene& scene, Editor& editor) : scene_(scene), editor_(editor) {}

    void press(const Pointer& pointer);
    void move(const Pointer& pointer);
    /// Ends a drag and the note of the pad.
    void release();
    /// The target that is being dragged stays hovered.
    void leave();
    /// turns: steps of the wheel; positive is up or right.
    void wheel(const Pointer& pointer, int turns);

  private:
    void hoverOver(const Pointer& pointer);
    void pressField(Target::Kind kind);
    void pressControl(const Target& target, const Pointer& pointer);
    void pressCurvePoint(const Target& target, const Pointer& pointer);
    void pressPad(const Pointer& pointer);
    bool isDragging() const { return drag_ || curveDrag_; }
    bool isSecondPress(const Target& target, const Pointer& pointer) const;

    Scene& scene_;
    Editor& editor_;
    std::optional<KnobDrag> drag_;
    std::optional<CurveDrag> curveDrag_;
    Pointer last_;
    Target pressed_;
    std::optional<Pointer> pressedAt_;
};

}  // namespace orvalo::effect::ui
