#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace orvalo::testing {

/// The true peak of a signal in dB: the highest of the four interpolated signals of Recommendation
/// ITU-R BS.1770-4, Annex 2, computed in double by the definition of the filter.
inline double truePeak(const std::vector<float>& samples) {
    constexpr std::array<double, 48> filter{
        0.0017089843750,  -0.0291748046875, -0.0189208984375, -0.0083007812500, 0.0109863281250,
        0.0292968750000,  0.0330810546875,  0.0148925781250,  -0.0196533203125, -0.0517578125000,
        -0.0582275390625, -0.0266113281250, 0.0332031250000,  0.0891113281250,  0.1015625000000,
        0.0476074218750,  -0.0594482421875, -0.1665039062500, -0.2003173828125, -0.1022949218750,
        0.1373291015625,  0.4650878906250,  0.7797851562500,  0.9721679687500,  0.9721679687500,
        0.7797851562500,  0.4650878906250,  0.1373291015625,  -0.1022949218750, -0.2003173828125,
        -0.1665039062500, -0.0594482421875, 0.0476074218750,  0.1015625000000,  0.0891113281250,
        0.0332031250000,  -0.0266113281250, -0.0582275390625, -0.0517578125000, -0.0196533203125,
        0.0148925781250,  0.0330810546875,  0.0292968750000,  0.0109863281250,  -0.0083007812500,
        -0.0189208984375, -0.0291748046875, 0.0017089843750};
    double highest = 0.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        for (std::size_t phase = 0; phase < 4; ++phase) {
            double sum = 0.0;
            for (std::size_t tap = 0; tap < 12 && tap <= i; ++tap) {
                sum += filter.at(4 * tap + phase) * static_cast<double>(samples[i - tap]);
            }
            highest = std::max(highest, std::abs(sum));
        }
    }
    return 20.0 * std::log10(highest);
}

}  // namespace orvalo::testing
