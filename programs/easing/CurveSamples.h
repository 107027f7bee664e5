#pragma once

#include <vector>

#include "animation/EnumEasing.h"

namespace orvalo {

/// A curve's values on a way from 0 to 1, in steps of equal time.
struct CurveSamples {
    std::vector<double> values;
    double least;     ///< Of them and 0.
    double greatest;  ///< Of them and 1.

    explicit CurveSamples(EnumEasing type);
};

}  // namespace orvalo
