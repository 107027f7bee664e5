#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "bench/measuring/Child.h"
#include "tests/testing/XServer.h"

namespace orvalo::bench {

/// A virtual display with a window manager, observed for changes.
class Desktop {
  public:
    /// Times of first events, by monotonicNanoseconds().
    using Moment = std::optional<std::int64_t>;

    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    /// Forgets earlier events.
    void beginWatch();
    /// Waits until the display changes, at most 0.1 s.
    void awaitChange();
    /// When a window of an application's size was mapped.
    Moment mappedAt() const { return mappedAt_; }
    /// When another window became the active one.
    Moment activeAt() const { return activeAt_; }

    /// Counts the pixels of that colour, 0xRRGGBB, in every fourth column and row.
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
