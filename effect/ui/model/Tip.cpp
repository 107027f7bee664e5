#include "effect/ui/model/Tip.h"

#include <array>
#include <cmath>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/model/ValueText.h"

namespace orvalo::effect::ui {

namespace {

using Kind = Target::Kind;

/// In the order of the parameters.
constexpr std::array<const char*, parameterCount> descriptions{
    "Switches the effect on, or bypasses it.",
    "Threshold: the peak level above which the gain is reduced.",
    "Ratio: input dB per output dB above the threshold.",
    "Knee: width of the smooth bend around the threshold.",
    "Attack: time until 63 % of a rise in gain reduction is reached.",
    "Release: time until a held peak has fallen by 63 %.",
    "Make-up: gain of the compressed signal.",
    "Mix: share of the compressed signal; the rest is the dry signal.",
    "Output: gain after the mix.",
    "Depth: how far a note of full velocity lowers the signal.",
    "Release: time constant of the recovery after the notes.",
    "Level: gain reduction that starts a note.",
    "Note: the number of the note that is sent.",
    "Channel: MIDI channel to receive and send on. All receives every channel and sends on 1.",
    "Beat: ducks on a grid of the host's musical time, or at its own tempo.",
    "Division: step of the grid as a note value. D is dotted, T is triplet.",
    "Offset: how much later the beats start, as a share of the step.",
    "Length: of a beat, as a share of the step; then Release of DUCKING follows.",
    "Tempo: used while the host tells none.",
    "Source: what the detector hears, the input or the external side-chain. Where that is not "
    "connected, the input.",
    "High-pass: frequency below which the detector hears less, by 12 dB per octave. Off at 20 Hz.",
    "Low-pass: frequency above which the detector hears less, by 12 dB per octave. Off at 20 kHz.",
    "Listen: plays what the detector hears.",
    "Detector: measures peaks, or the mean power (RMS).",
    "Window: time constant of the mean power, for RMS.",
    "Hold: time for which a peak of the gain reduction is held before the release.",
    "Auto Make-up: replaces Make-up by half the reduction that the curve gives at 0 dB.",
    "Range: most gain reduction.",
    "Look-ahead: how far the gain is ahead of the signal. Adds this latency.",
    "Ceiling: limits the true peaks of the output. Adds latency.",
    "True Peak: the ceiling of the output, between the samples, too.",
    "Stereo: the two signals that are compressed.",
    "Link: how far both signals get the reduction of the louder one.",
    "Mid Amount: share of the reduction that the middle gets, for Mid, side.",
    "Side Amount: share of the reduction that the sides get, for Mid, side.",
    "Adaptive: holds the reduction from crest to crest, so that low tones stay undistorted.",
    "Oversampling: rate at which the gain is computed and applied. Adds latency.",
};

/// In the order of the pages.
constexpr std::array<const char*, pageCount> pageDescriptions{
    "The levels of the last seconds.",
    "What the detector hears: its source, its filters and how it measures.",
    "Hold, range, look-ahead, automatic make-up, and how cleanly fast times work.",
    "The ceiling for true peaks, and how the two channels are compressed.",
    "Beats that duck the signal in time with the music.",
};

/// What the choices are, or the ends of the range; and the default.
std::string rangeText(Parameter parameter) {
    const auto& ends = range(parameter);
    if (lookOf(parameter) != Look::knob) {
        std::string text;
        for (int value = 0; value <= std::lround(ends.maximum); ++value) {
            text += (value == 0 ? "" : " / ") + valueText(parameter, static_cast<float>(value));
        }
        return text + ", default " + valueText(parameter, ends.standard);
    }
    return valueText(parameter, ends.minimum) + " to " + valueText(parameter, ends.maximum) +
           ", default " + valueText(parameter, ends.standard);
}

}  // namespace

std::vector<std::string> tipFor(const Target& target) {
    switch (target.kind) {
        case Kind::control:
        case Kind::value: {
            std::vector<std::string> text{
                descriptions.at(static_cast<std::size_t>(target.parameter))};
            if (target.parameter != Parameter::enabled) {
                text.push_back(rangeText(target.parameter));
            }
            return text;
        }
        case Kind::thresholdPoint:
            return {"Drag sideways: threshold. Wheel: knee.", rangeText(Parameter::threshold)};
        case Kind::ratioPoint:
            return {"Drag up and down: ratio. Wheel: knee.", rangeText(Parameter::ratio)};
        case Kind::curve:
            return {"Output level by input level. Drag the points; the wheel changes the knee."};
        case Kind::history:
            return {"Levels, and below them gain reduction and ducking. Click to pause."};
        case Kind::historySpan:
            return {"Visible time: 3, 6, 12 or 30 s."};
        case Kind::graph:
            return {target.entry == static_cast<std::size_t>(Page::sideChain)
                        ? "What the detector hears now, and the response of its filters."
                        : "The ducking by beats. Depth and Release of DUCKING shape it, too."};
        case Kind::tab:
            return {pageDescriptions.at(target.entry)};
        case Kind::meters:
            return {
                "Levels with the peaks of the last 2 s; TP: highest true peak. Click to reset it "
                "and the clip lights."};
        case Kind::pad:
            return {"Press to duck: the higher, the deeper."};
        case Kind::noteKeys:
            return {"The keys A to K play notes, with W, E, T, Y and U as the black keys."};
        default:
            return {};
    }
}

Rect tipAnchor(const Scene& scene, const Target& target) {
    const Layout& layout = scene.layout;
    const double reach = curvePointReach(layout);
    const auto around = [reach](const CurvePoint& point) {
        return Rect{point.x - reach, point.y - reach, 2.0 * reach, 2.0 * reach};
    };
    switch (target.kind) {
        case Kind::control:
        case Kind::value:
            return layout.cell(target.parameter).area;
        case Kind::thresholdPoint:
            return around(thresholdPoint(scene));
        case Kind::ratioPoint:
            return around(ratioPoint(scene));
        case Kind::curve:
            return layout.curve;
        case Kind::history:
            return layout.history;
        case Kind::historySpan:
            return historyAreas(layout).span;
        case Kind::graph:
            return layout.graph;
        case Kind::tab:
            return layout.tab.at(target.entry);
        case Kind::meters:
            return layout.panel(Section::meters).area;
        case Kind::pad:
        case Kind::noteKeys:
            return layout.pad;
        default:
            return {};
    }
}

bool TipTimer::update(const Target& hovered, double now) {
    if (hovered != hovered_) {
        hovered_ = hovered;
        since_ = now;
        isDismissed_ = false;
    }
    return !isDismissed_ && now - since_ >= restSeconds && !tipFor(hovered).empty();
}

}  // namespace orvalo::effect::ui
