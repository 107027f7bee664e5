#include "bench/easing/QtCurves.h"

#include <QEasingCurve>
#include <algorithm>

namespace orvalo::bench {

std::optional<QtCurve> qtCurve(std::size_t number) {
    // Qt has the same curves in the same order.
    return [curve = QEasingCurve(static_cast<QEasingCurve::Type>(number))](
               const std::vector<double>& shares, std::vector<double>& values) {
        std::transform(shares.begin(), shares.end(), values.begin(),
                       [&curve](double share) { return curve.valueForProgress(share); });
    };
}

}  // namespace orvalo::bench
