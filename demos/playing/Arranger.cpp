#include "demos/playing/Arranger.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>

#include "demos/playing/Feel.h"
#include "demos/playing/Players.h"
#include "demos/theory/Harmony.h"
#include "demos/theory/Random.h"

namespace orvalo {

namespace {

Instrument instrumentOf(const Band& band, Role role) {
    switch (role) {
        case Role::lead:
            return band.lead;
        case Role::comp:
            return band.comp;
        case Role::pad:
            return band.pad;
        case Role::bass:
            return band.bass;
    }
    return Instrument::none;
}

/// The loudness of the drums in the mix, in LUFS.
constexpr double drumLoudness = -29.5;

double loudnessOf(const Layer& layer) {
    double loudness = 0;
    switch (layer.role) {
        case Role::lead:
            loudness = -30.5;
            break;
        case Role::comp:
            loudness = -32.5;
            break;
        case Role::pad:
            loudness = -34.5;
            break;
        case Role::bass:
            loudness = -31.0;
            break;
    }
    return loudness + 20.0 * std::log10(layer.level / 100.0);
}

int panOf(const Layer& layer) {
    switch (layer.role) {
        case Role::lead:
            return 64 + layer.spread / 4;
        case Role::comp:
            return 64 - layer.spread;
        case Role::pad:
            return 64 + layer.spread;
        case Role::bass:
            return 64;
    }
    return 64;
}

void swell(Score& score, int part, const Layer& layer, int barTicks) {
    constexpr int step = ticksPerQuarter / 8;
    const int period = std::min(layer.swellBars * barTicks, score.loopTicks);
    for (int tick = 0; tick < score.loopTicks; tick += step) {
        const double phase = static_cast<double>(tick % period) / period;
        const double depth = layer.swell / 100.0 * (1.0 - std::sin(std::numbers::pi * phase));
        score.swells.push_back({part, tick, static_cast<int>(std::lround(127.0 * (1.0 - depth)))});
    }
}

void play(const Session& session) {
    switch (session.layer.playing) {
        case Playing::chords:
            playChords(session);
            break;
        case Playing::bassLine:
            playBass(session);
            break;
        case Playing::ostinato:
            playOstinato(session);
            break;
        case Playing::melody:
            playMelody(session);
            break;
    }
}

}  // namespace

Score arrange(const Piece& piece) {
    const Style style = piece.style();
    const Scale scale(piece.tonic, piece.mode);
    const Scale chordScale = scale.harmony();
    Random random(piece.seed);

    Score score;
    score.quarterSeconds = 60.0 / piece.tempo;
    score.loopTicks = piece.bars * piece.metre.barTicks();

    const auto& progressions =
        (scale.isMinor() && !style.minorProgressions.empty()) || style.majorProgressions.empty()
            ? style.minorProgressions
            : style.majorProgressions;
    const Harmony harmony(random.pick(std::span(progressions)), chordScale, piece.metre,
                          piece.bars);
    const Feel feel(style, random.pick(std::span(style.dynamics)), piece.metre, score.loopTicks);

    for (std::size_t index = 0; index < style.layers.size(); ++index) {
        const Layer& layer = style.layers[index];
        const Instrument instrument = instrumentOf(piece.band, layer.role);
        if (instrument == Instrument::none) {
            continue;
        }
        // Random numbers per layer: a change of one layer does not change the others.
        Random own(piece.seed * 64U + static_cast<std::uint32_t>(index) + 1U);
        const InstrumentFacts& facts = factsOf(instrument);
        const int part = static_cast<int>(score.parts.size());
        score.parts.push_back({static_cast<int>(instrument), false, loudnessOf(layer), panOf(layer),
                               style.reverb, style.chorus});
        const int cells = layer.cells > 0 ? layer.cells : style.cells;
        play({score, part, layer, cells, own.pick(std::span(layer.patterns)), facts.low, facts.high,
              piece.metre, piece.bars, scale, harmony, feel, own});
        if (layer.swell > 0) {
            swell(score, part, layer, piece.metre.barTicks());
        }
    }
    if (piece.band.kit != Kit::none && !style.grooves.empty()) {
        Random own(piece.seed * 64U);
        const int part = static_cast<int>(score.parts.size());
        score.parts.push_back(
            {static_cast<int>(piece.band.kit), true, drumLoudness, 64, style.reverb / 2, 0});
        playDrums({score, part, own.pick(std::span(style.grooves)), style.cells, piece.metre,
                   piece.bars, feel, own});
    }
    return score;
}

}  // namespace orvalo
