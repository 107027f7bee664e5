#include "bench/easing/QtCurves.h"

namespace orvalo::bench {

std::optional<QtCurve> qtCurve(std::size_t /*number*/) {
    return std::nullopt;
}

}  // namespace orvalo::bench
