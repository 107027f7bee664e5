#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "bench/measuring/Child.h"
#include "tests/testing/XServer.h"

namespace orvalo::bench {

/// A display of its own with a window manager, watched.
class Desktop {
  public:
    /// When something was seen first, by monotonicNanoseconds().
    using Moment = std::optional<std::int64_t>;

    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    /// From now on: what was before is forgotten.
    void beginWatch();
    /// Waits until something has changed on the display, a tenth of a second at most.
    void awaitChange();
    /// Since the beginning of the watch, a window as big as an application's has come up.
    Moment mappedAt() const { return mappedAt_; }
    /// Since then another window was made the active one, which takes the keys.
    Moment activeAt() const { return activeAt_; }

    /// How many of every fourth pixel, across and down, have that colour, 0xRRGGBB.
    int count(std::uint32_t color) const;
    /// Types Ctrl+E.
    void typeControlE() const;
    /// Types the space bar.
    void typeSpace() const;

  private:
    struct Connection;
    unsigned long activeWindow() const;

    testing::XServer server_;
    Child manager_;
    std::unique_ptr<Connection> connection_;
    Moment mappedAt_;
    Moment activeAt_;
};

}  // namespace orvalo::bench
