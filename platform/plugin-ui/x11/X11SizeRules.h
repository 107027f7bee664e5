#pragma once

#include <optional>

#include "platform/plugin-ui/x11/X11Geometry.h"

namespace orvalo {

/// The extents that a UI can be shown at: what it asked for last, and its window's hints
/// as ICCCM 4.1.2.3 has them.
struct X11SizeRules {
    /// A ratio of width to height, as two whole numbers above 0.
    struct Aspect {
        int width;
        int height;
    };

    X11Size wanted;          ///< What the UI asked for last.
    X11Size smallest{1, 1};  ///< As its hints say.
    X11Size largest{kNoLimit, kNoLimit};
    std::optional<Aspect> narrowest;
    std::optional<Aspect> widest;
    bool isStatedFixed = false;  ///< The UI's data say that it cannot be resized.

    /// More than any screen.
    static constexpr int kNoLimit = 32767;

    /// Whether there is but one extent: that asked for.
    bool isFixed() const;
    /// The extent to show it at in that area, up to the limit. It is larger than the area only
    /// where the UI cannot be smaller.
    X11Size fit(X11Size area) const;
    /// The least area in which it is whole.
    X11Size least() const;
};

}  // namespace orvalo
