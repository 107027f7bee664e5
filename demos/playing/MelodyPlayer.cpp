#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <span>
#include <string_view>
#include <vector>

#include "demos/playing/Pattern.h"
#include "demos/playing/Players.h"

namespace orvalo {

namespace {

/// The rhythm of a bar, and the steps in scale degrees from note to note.
struct Motif {
    std::vector<Hit> hits;
    std::vector<int> steps;
};

/// The forms of the phrases: one letter per bar names its motif.
constexpr std::array<std::string_view, 5> forms = {"abac", "aabc", "abcb", "aabb", "abca"};

class Melody {
  public:
    explicit Melody(const Session& session);
    void play();

  private:
    Motif motif();
    int fitted(int degree, int tick, bool strong) const;
    int altered(int key, const Chord& chord) const;

    const Session& session_;
    int lowest_;
    int highest_;
    int degree_;
};

Melody::Melody(const Session& session) : session_(session) {
    const int width = session.high - session.low;
    const int octave = 12 * session.layer.octave;
    lowest_ = session.scale.degreeNear(std::max(session.low, session.low + width / 4 + octave));
    highest_ = session.scale.degreeNear(std::min(session.high, session.high - width / 6 + octave));
    degree_ = (lowest_ + highest_) / 2;
}

Motif Melody::motif() {
    constexpr std::array<int, 12> leaps = {1, 1, 1, -1, -1, -1, 2, -2, 0, 3, -3, 4};
    Random& random = session_.random;
    const std::string_view rhythm = random.pick(std::span(session_.layer.patterns));
    Motif motif{spread(rhythm, session_.cells, session_.metre, 1), {}};
    int last = 0;
    for (std::size_t index = 0; index < motif.hits.size(); ++index) {
        // A leap is followed by a step in the other direction.
        const int step =
            std::abs(last) >= 3 ? (last > 0 ? -1 : 1) : random.pick(std::span<const int>(leaps));
        motif.steps.push_back(step);
        last = step;
    }
    return motif;
}

/// Replaces a scale note by the altered chord note a semitone away, if there is one.
int Melody::altered(int key, const Chord& chord) const {
    if (!chord.contains(key)) {
        for (const int other : {key + 1, key - 1}) {
            if (chord.contains(other) && !session_.scale.contains(other)) {
                return other;
            }
        }
    }
    return key;
}

int Melody::fitted(int degree, int tick, bool strong) const {
    int inside = degree;
    if (inside > highest_) {
        inside = std::max(lowest_, 2 * highest_ - inside);
    }
    if (inside < lowest_) {
        inside = std::min(highest_, 2 * lowest_ - inside);
    }
    if (strong) {
        const Chord& chord = session_.harmony.at(tick);
        for (const int off : {0, 1, -1, 2, -2}) {
            const int near = inside + off;
            if (near >= lowest_ && near <= highest_ && chord.contains(session_.scale.keyOf(near))) {
                return near;
            }
        }
    }
    return inside;
}

void Melody::play() {
    const std::string_view form = session_.random.pick(std::span<const std::string_view>(forms));
    const std::array<Motif, 3> motifs = {motif(), motif(), motif()};
    const int barTicks = session_.metre.barTicks();
    const int first = fitted(degree_, 0, true);
    degree_ = first;
    std::vector<Hit> line;
    std::vector<int> degrees;
    std::array<int, 3> starts = {first, first, first};
    std::array<bool, 3> heard = {false, false, false};
    for (int bar = 0; bar < session_.bars; ++bar) {
        const auto letter =
            static_cast<std::size_t>(form[static_cast<std::size_t>(bar) % form.size()] - 'a');
        const Motif& now = motifs.at(letter);
        // A repeated motif starts on the same degree, so that it is recognised.
        if (heard.at(letter)) {
            degree_ = starts.at(letter);
        } else {
            starts.at(letter) = degree_;
            heard.at(letter) = true;
        }
        for (std::size_t index = 0; index < now.hits.size(); ++index) {
            Hit hit = now.hits[index];
            const bool strong = hit.tick % session_.metre.beatTicks() == 0;
            hit.tick += bar * barTicks;
            const int step = index == 0 ? 0 : now.steps[index];
            degree_ = fitted(degree_ + step, hit.tick, strong);
            line.push_back(hit);
            degrees.push_back(degree_);
        }
    }
    // The last note lies one step from the first note, which follows in the next pass.
    if (degrees.size() > 2) {
        degrees.back() = fitted(first + (session_.random.chance(60) ? 1 : -1), 0, false);
    }
    for (std::size_t index = 0; index < line.size(); ++index) {
        const Hit& hit = line[index];
        if (session_.plays(hit.tick)) {
            const int key =
                altered(session_.scale.keyOf(degrees[index]), session_.harmony.at(hit.tick));
            session_.write(key, hit.tick, hit.length, strengthOf(hit.sign));
        }
    }
}

}  // namespace

void playMelody(const Session& session) {
    Melody(session).play();
}

}  // namespace orvalo
