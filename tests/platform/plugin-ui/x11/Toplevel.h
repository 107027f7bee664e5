#pragma once

#include <vector>

namespace orvalo::testing {

/// A plain window at (100, 100), 800 x 600, shown on the screen.
class Toplevel {
  public:
    Toplevel();
    ~Toplevel();
    Toplevel(const Toplevel&) = delete;
    Toplevel& operator=(const Toplevel&) = delete;

    unsigned long window() const { return window_; }
    /// Takes it away, with whatever is in it.
    void destroy();
    /// Puts it below all others.
    void lower() const;
    /// Makes a window in it that has the keyboard, and returns that.
    unsigned long focusInside() const;
    /// Keys that came to the toplevel or the window inside.
    static std::vector<unsigned long> takeKeys();

  private:
    unsigned long window_;
};

}  // namespace orvalo::testing
