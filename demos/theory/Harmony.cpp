#include "demos/theory/Harmony.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace orvalo {

namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) {
            parts.push_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

}  // namespace

Harmony::Harmony(std::string_view progression, const Scale& scale, Metre metre, int bars)
    : loopTicks_(bars * metre.barTicks()) {
    const auto written = split(progression, ' ');
    if (written.empty()) {
        throw std::invalid_argument("a progression is empty");
    }
    for (int bar = 0; bar < bars; ++bar) {
        const auto chords = split(written[static_cast<std::size_t>(bar) % written.size()], ',');
        for (std::size_t place = 0; place < chords.size(); ++place) {
            const int share = metre.barTicks() / static_cast<int>(chords.size());
            const Chord chord = parseChord(chords[place], scale);
            if (spans_.empty() || spans_.back().chord != chord) {
                spans_.push_back({bar * metre.barTicks() + static_cast<int>(place) * share, chord});
            }
        }
    }
}

std::size_t Harmony::indexAt(int tick) const {
    const int inside = ((tick % loopTicks_) + loopTicks_) % loopTicks_;
    const auto behind = std::ranges::upper_bound(spans_, inside, std::less<>(), &Span::start);
    return static_cast<std::size_t>(behind - spans_.begin()) - 1;
}

const Chord& Harmony::at(int tick) const {
    return spans_[indexAt(tick)].chord;
}

const Chord& Harmony::after(int tick) const {
    return spans_[(indexAt(tick) + 1) % spans_.size()].chord;
}

int Harmony::ticksToChange(int tick) const {
    const int inside = ((tick % loopTicks_) + loopTicks_) % loopTicks_;
    const std::size_t next = indexAt(tick) + 1;
    return (next < spans_.size() ? spans_[next].start : loopTicks_) - inside;
}

}  // namespace orvalo
