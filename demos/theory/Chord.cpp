#include "demos/theory/Chord.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <string>

namespace orvalo {

namespace {

struct Quality {
    std::string_view name;
    std::vector<int> intervals;
};

const std::vector<Quality>& qualities() {
    static const std::vector<Quality> table = {
        {"M", {0, 4, 7}},          {"m", {0, 3, 7}},          {"o", {0, 3, 6}},
        {"M7", {0, 4, 7, 11}},     {"m7", {0, 3, 7, 10}},     {"D", {0, 4, 7, 10}},
        {"h", {0, 3, 6, 10}},      {"o7", {0, 3, 6, 9}},      {"M9", {0, 4, 7, 11, 14}},
        {"m9", {0, 3, 7, 10, 14}}, {"D9", {0, 4, 7, 10, 14}}, {"6", {0, 4, 7, 9}},
        {"m6", {0, 3, 7, 9}},      {"s", {0, 5, 7}},          {"p", {0, 7}},
    };
    return table;
}

std::vector<int> stackedThirds(const Scale& scale, int degree, int notes) {
    std::vector<int> intervals;
    intervals.reserve(static_cast<std::size_t>(notes));
    for (int note = 0; note < notes; ++note) {
        intervals.push_back(scale.keyOf(degree + 2 * note) - scale.keyOf(degree));
    }
    return intervals;
}

}  // namespace

bool Chord::contains(int key) const {
    const int above = (key + 120 - root) % 12;
    return std::ranges::any_of(intervals, [&](int interval) { return interval % 12 == above; });
}

int Chord::third() const {
    return intervals[1];
}

int Chord::fifth() const {
    return intervals.size() > 2 ? intervals[2] : intervals.back();
}

int Chord::seventh() const {
    return intervals.size() > 3 ? intervals[3] : intervals.back();
}

Chord parseChord(std::string_view text, const Scale& scale) {
    const auto refuse = [&] {
        throw std::invalid_argument("\"" + std::string(text) + "\" is not a chord");
    };
    std::string_view rest = text;
    const bool altered = !text.empty() && (text.front() == 'b' || text.front() == '#');
    int shift = 0;
    if (altered) {
        shift = rest.front() == 'b' ? 11 : 1;
        rest.remove_prefix(1);
    }
    if (rest.empty() || rest.front() < '1' || rest.front() > '7') {
        refuse();
    }
    const int degree = rest.front() - '1';
    rest.remove_prefix(1);
    const Scale& counted = altered ? Scale(scale.tonic(), Mode::major) : scale;
    const int root = (counted.keyOf(degree) + shift) % 12;
    if (rest.empty() && !altered) {
        return {root, stackedThirds(scale, degree, 3)};
    }
    if (rest.empty() || rest.front() != ':') {
        refuse();
    }
    rest.remove_prefix(1);
    if (!altered && (rest == "7" || rest == "9")) {
        return {root, stackedThirds(scale, degree, rest == "7" ? 4 : 5)};
    }
    const auto found = std::ranges::find(qualities(), rest, &Quality::name);
    if (found == qualities().end()) {
        refuse();
    }
    return {root, found->intervals};
}

}  // namespace orvalo
