#include "demos/theory/Scale.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>

namespace orvalo {

namespace {

struct ModeFacts {
    Mode mode;
    Mode harmony;
    std::string_view name;
    std::vector<int> steps;
};

const ModeFacts& factsOf(Mode mode) {
    static const std::vector<ModeFacts> table = {
        {Mode::major, Mode::major, "major", {0, 2, 4, 5, 7, 9, 11}},
        {Mode::minor, Mode::minor, "minor", {0, 2, 3, 5, 7, 8, 10}},
        {Mode::dorian, Mode::dorian, "dorian", {0, 2, 3, 5, 7, 9, 10}},
        {Mode::phrygian, Mode::phrygian, "phrygian", {0, 1, 3, 5, 7, 8, 10}},
        {Mode::lydian, Mode::major, "lydian", {0, 2, 4, 6, 7, 9, 11}},
        {Mode::mixolydian, Mode::mixolydian, "mixolydian", {0, 2, 4, 5, 7, 9, 10}},
        {Mode::harmonicMinor, Mode::harmonicMinor, "harmonic minor", {0, 2, 3, 5, 7, 8, 11}},
        {Mode::phrygianDominant,
         Mode::phrygianDominant,
         "phrygian dominant",
         {0, 1, 4, 5, 7, 8, 10}},
        {Mode::doubleHarmonic, Mode::doubleHarmonic, "double harmonic", {0, 1, 4, 5, 7, 8, 11}},
        {Mode::majorPentatonic, Mode::major, "major pentatonic", {0, 2, 4, 7, 9}},
        {Mode::minorPentatonic, Mode::minor, "minor pentatonic", {0, 3, 5, 7, 10}},
        {Mode::blues, Mode::mixolydian, "blues", {0, 3, 5, 6, 7, 10}},
        {Mode::pelog, Mode::phrygian, "pelog", {0, 1, 3, 7, 8}},
        {Mode::hirajoshi, Mode::minor, "hirajoshi", {0, 2, 3, 7, 8}},
    };
    return *std::ranges::find(table, mode, &ModeFacts::mode);
}

}  // namespace

std::string_view nameOf(Mode mode) {
    return factsOf(mode).name;
}

std::string_view nameOfTonic(int tonic) {
    constexpr std::array<std::string_view, 12> names = {"C",  "Db", "D",  "Eb", "E",  "F",
                                                        "F#", "G",  "Ab", "A",  "Bb", "B"};
    return names.at(static_cast<std::size_t>(tonic));
}

Scale::Scale(int tonic, Mode mode) : tonic_(tonic), mode_(mode), steps_(factsOf(mode).steps) {}

int Scale::keyOf(int degree) const {
    const int octave = degree >= 0 ? degree / size() : -((size() - 1 - degree) / size());
    const int step = steps_[static_cast<std::size_t>(degree - octave * size())];
    return 48 + tonic_ + 12 * octave + step;
}

bool Scale::contains(int key) const {
    return std::ranges::find(steps_, (key + 120 - tonic_) % 12) != steps_.end();
}

int Scale::degreeNear(int key) const {
    int best = 0;
    int bestDistance = 1000;
    for (int degree = -6 * size(); degree <= 8 * size(); ++degree) {
        const int distance = std::abs(keyOf(degree) - key);
        if (distance < bestDistance) {
            best = degree;
            bestDistance = distance;
        }
    }
    return best;
}

Scale Scale::harmony() const {
    return {tonic_, factsOf(mode_).harmony};
}

bool Scale::isMinor() const {
    const Scale chords = harmony();
    return !chords.contains(chords.tonic_ + 4);
}

}  // namespace orvalo
