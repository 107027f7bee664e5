#pragma once

#include <string>

#include "animation/EnumEasing.h"

namespace orvalo {

/// The curve's formula, such as "u = t / d; c * u * u + b", to copy into a program: t is the frame,
/// b the start value, c the change, d the number of frames. Assignments end with ";", the last
/// expression is the value. Out-In curves, In Bounce and In-Out Bounce call other curves by name.
/// Empty for the end marker and for invalid values.
std::string easingFormula(EnumEasing type);

/// How the curve differs on purpose from the one that has this name elsewhere; empty for most.
std::string easingDeviation(EnumEasing type);

}  // namespace orvalo
