#pragma once

#include <optional>

#include "platform/plugin-ui/x11/X11Geometry.h"

namespace orvalo {

/// The sizes that a UI can be shown at: its last request, and its window's hints as in ICCCM
/// 4.1.2.3.
struct X11SizeRules {
    /// A ratio of width to height, both above 0.
    struct Aspect {
        int width;
        int height;
    };

    X11Size requested;       ///< By the UI, last.
    X11Size smallest{1, 1};  ///< In the hints, as are the next three.
    X11Size largest{kNoLimit, kNoLimit};
    std::optional<Aspect> narrowest;
    std::optional<Aspect> widest;
    bool isStatedFixed = false;  ///< The UI's data say that its size is fixed.

    /// More than any screen.
    static constexpr int kNoLimit = 32767;

    /// Whether the requested size is the only one.
    bool isFixed() const;
    /// The size to show the UI at in that area, at most kNoLimit; larger than the area only where
    /// the UI cannot be smaller.
    X11Size fit(X11Size area) const;
    /// The smallest area that shows the whole UI.
    X11Size minimumSize() const;
};

}  // namespace orvalo
