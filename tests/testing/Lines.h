#pragma once

#include <string>
#include <vector>

namespace orvalo::testing {

/// Lines of standard output, in order.
using Lines = std::vector<std::string>;

inline Lines operator+(Lines left, const Lines& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

}  // namespace orvalo::testing
