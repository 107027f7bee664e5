#pragma once

#include "effect/ui/model/Input.h"
#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// A point of the transfer curve that is being dragged: the curve follows the pointer. Keeps the
/// unrounded level, so that slow and fine moves add up.
class CurveDrag {
  public:
    /// parameter: threshold or ratio. at: where the point was pressed.
    CurveDrag(const Scene& scene, Parameter parameter, const Pointer& at);

    Parameter parameter() const { return parameter_; }

    /// The parameter's new value.
    float move(const Scene& scene, const Pointer& to);

  private:
    Parameter parameter_;
    Pointer last_;
    /// The threshold, or the output level at the ratio's point, in dB.
    double level_;
};

}  // namespace orvalo::effect::ui
