#pragma once

#include <cstdint>

#include "bench/measuring/Child.h"
#include "tests/testing/XServer.h"

namespace orvalo::bench {

/// A display of its own with a window manager.
class Desktop {
  public:
    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    /// How many of every fourth pixel, across and down, have that colour, 0xRRGGBB.
    int count(std::uint32_t color) const;
    /// The window that was made the active one last, which may be gone; 0 before the first.
    unsigned long activeWindow() const;
    /// Types Ctrl+E.
    void typeControlE() const;

  private:
    testing::XServer server_;
    Child manager_;
    struct Connection;
    Connection* connection_;
};

}  // namespace orvalo::bench
