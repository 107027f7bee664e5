#pragma once

#include <stdexcept>

namespace orvalo {

/// A text that is not what it should be, or a value that a format cannot carry; its text is one
/// line that says where and why.
class FormatError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace orvalo
