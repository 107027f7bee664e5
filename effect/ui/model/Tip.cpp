#include "effect/ui/model/Tip.h"

#include <array>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/GraphAreas.h"
#include "effect/ui/model/ValueText.h"

namespace orvalo::effect::ui {

namespace {

using Kind = Target::Kind;

/// In the order of the parameters.
constexpr std::array<const char*, shownParameterCount> descriptions{
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
};

std::string rangeText(Parameter parameter) {
    const auto& ends = range(parameter);
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
            if (control(target.parameter).unit != Unit::toggle) {
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
