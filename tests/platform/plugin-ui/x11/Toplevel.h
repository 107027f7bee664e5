#pragma once

#include <vector>

namespace orvalo::testing {

/// A window without a toolkit, on screen at (100, 100), 800 x 600.
class Toplevel {
  public:
    Toplevel();
    ~Toplevel();
    Toplevel(const Toplevel&) = delete;
    Toplevel& operator=(const Toplevel&) = delete;

    unsigned long window() const { return window_; }
    /// Destroys the window and its descendants.
    void destroy();
    /// Puts the window below all others.
    void lower() const;
    /// Creates and focuses a window inside.
    unsigned long focusInside() const;
    /// The keys since the last call that came to the toplevel or the window inside.
    static std::vector<unsigned long> takeKeys();

  private:
    unsigned long window_;
};

}  // namespace orvalo::testing
