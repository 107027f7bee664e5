#include "demos/catalogue/Piece.h"

#include <cmath>

namespace orvalo {

std::int64_t Piece::frames() const {
    const double quarters = static_cast<double>(bars * metre.barTicks()) / ticksPerQuarter;
    return std::llround(quarters * 60.0 / tempo * pieceRate);
}

std::string Piece::ensemble() const {
    std::string text;
    const auto add = [&](std::string_view name) {
        text += text.empty() ? "" : ", ";
        text += name;
    };
    for (const Instrument instrument : {band.lead, band.comp, band.pad, band.bass}) {
        if (instrument != Instrument::none) {
            add(factsOf(instrument).name);
        }
    }
    if (band.kit != Kit::none) {
        add(nameOf(band.kit));
    }
    return text;
}

}  // namespace orvalo
