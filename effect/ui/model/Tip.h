#pragma once

#include <string>
#include <vector>

#include "effect/ui/model/Scene.h"

namespace orvalo::effect::ui {

/// The paragraphs of the text about a target: what it is and, for a control, its range and default.
/// Empty for targets without a text.
std::vector<std::string> tipFor(const Target& target);

/// The area that the text about a target is placed at; empty for targets without a text.
Rect tipAnchor(const Scene& scene, const Target& target);

/// Shows the text about a target that the pointer rests on.
class TipTimer {
  public:
    static constexpr double restSeconds = 0.7;

    /// Returns whether to show the text at `now`, in seconds.
    bool update(const Target& hovered, double now);
    /// Hides the text until the pointer enters another target. Called when the user presses a
    /// button or a key; hovered: the target that the pointer is on.
    void dismiss(const Target& hovered) {
        hovered_ = hovered;
        isDismissed_ = true;
    }

  private:
    Target hovered_;
    double since_ = 0.0;
    bool isDismissed_ = true;
};

}  // namespace orvalo::effect::ui
