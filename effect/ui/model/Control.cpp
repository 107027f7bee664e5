#include "effect/ui/model/Control.h"

#include <array>

namespace orvalo::effect::ui {

namespace {

constexpr std::array<Choice, 15> divisions{{{"1/1 dotted", "1/1 D"},
                                            {"1/1", "1/1"},
                                            {"1/1 triplet", "1/1 T"},
                                            {"1/2 dotted", "1/2 D"},
                                            {"1/2", "1/2"},
                                            {"1/2 triplet", "1/2 T"},
                                            {"1/4 dotted", "1/4 D"},
                                            {"1/4", "1/4"},
                                            {"1/4 triplet", "1/4 T"},
                                            {"1/8 dotted", "1/8 D"},
                                            {"1/8", "1/8"},
                                            {"1/8 triplet", "1/8 T"},
                                            {"1/16 dotted", "1/16 D"},
                                            {"1/16", "1/16"},
                                            {"1/16 triplet", "1/16 T"}}};
constexpr std::array<Choice, 2> sources{{{"Internal", "Int."}, {"External", "Ext."}}};
constexpr std::array<Choice, 2> detectors{{{"Peak", "Peak"}, {"RMS", "RMS"}}};
constexpr std::array<Choice, 2> stereoModes{{{"Left, right", "L, R"}, {"Mid, side", "M, S"}}};
constexpr std::array<Choice, 3> factors{{{"Off", "Off"}, {"Twofold", "2x"}, {"Fourfold", "4x"}}};

constexpr std::size_t mostSegments = 3;

/// In the order of the parameters.
constexpr std::array<Control, parameterCount> controls{{
    {"Enabled", "On", Unit::toggle, Taper::whole, 1.0, 1.0},
    {"Threshold", "Thresh", Unit::decibels, Taper::linear, 1.0, 0.1},
    {"Ratio", "Ratio", Unit::ratio, Taper::logarithmic, 0.0, 0.0},
    {"Knee", "Knee", Unit::decibels, Taper::linear, 0.5, 0.1},
    {"Attack", "Attack", Unit::milliseconds, Taper::logarithmic, 0.0, 0.0},
    {"Release", "Rel.", Unit::milliseconds, Taper::logarithmic, 0.0, 0.0},
    {"Make-up", "Make", Unit::decibels, Taper::linear, 0.5, 0.1},
    {"Mix", "Mix", Unit::percent, Taper::linear, 5.0, 1.0},
    {"Output", "Out", Unit::decibels, Taper::linear, 0.5, 0.1},
    {"Depth", "Depth", Unit::decibels, Taper::linear, 1.0, 0.1},
    {"Release", "Rel.", Unit::milliseconds, Taper::logarithmic, 0.0, 0.0},
    {"Level", "Level", Unit::decibels, Taper::linear, 0.5, 0.1},
    {"Note", "Note", Unit::note, Taper::whole, 1.0, 1.0},
    {"Channel", "Chan.", Unit::channel, Taper::whole, 1.0, 1.0},
    {"Beat", "Beat", Unit::toggle, Taper::whole, 1.0, 1.0},
    {"Division", "Div.", Unit::choice, Taper::whole, 1.0, 1.0, divisions},
    {"Offset", "Offs.", Unit::percent, Taper::linear, 5.0, 1.0},
    {"Length", "Len.", Unit::percent, Taper::linear, 5.0, 1.0},
    {"Tempo", "BPM", Unit::tempo, Taper::linear, 1.0, 0.1},
    {"Source", "Src", Unit::choice, Taper::whole, 1.0, 1.0, sources},
    {"Hi-pass", "HP", Unit::hertz, Taper::logarithmic, 0.0, 0.0},
    {"Lo-pass", "LP", Unit::hertz, Taper::logarithmic, 0.0, 0.0},
    {"Listen", "Listen", Unit::toggle, Taper::whole, 1.0, 1.0},
    {"Detector", "Det.", Unit::choice, Taper::whole, 1.0, 1.0, detectors},
    {"Window", "Wind.", Unit::milliseconds, Taper::logarithmic, 0.0, 0.0},
    {"Hold", "Hold", Unit::milliseconds, Taper::linear, 5.0, 1.0},
    {"Auto Make-up", "Auto", Unit::toggle, Taper::whole, 1.0, 1.0},
    {"Range", "Range", Unit::decibels, Taper::linear, 1.0, 0.1},
    {"Look-ahead", "Ahead", Unit::milliseconds, Taper::linear, 0.5, 0.1},
    {"Ceiling", "Ceil.", Unit::toggle, Taper::whole, 1.0, 1.0},
    {"True Peak", "Peak", Unit::decibels, Taper::linear, 0.5, 0.1},
    {"Stereo", "Mode", Unit::choice, Taper::whole, 1.0, 1.0, stereoModes},
    {"Link", "Link", Unit::percent, Taper::linear, 5.0, 1.0},
    {"Mid Amount", "Mid", Unit::percent, Taper::linear, 5.0, 1.0},
    {"Side Amount", "Side", Unit::percent, Taper::linear, 5.0, 1.0},
    {"Adaptive", "Adapt", Unit::toggle, Taper::whole, 1.0, 1.0},
    {"Oversampling", "Over", Unit::choice, Taper::whole, 1.0, 1.0, factors},
}};

}  // namespace

const Control& control(Parameter parameter) {
    return controls.at(static_cast<std::size_t>(parameter));
}

Look lookOf(Parameter parameter) {
    const Control& how = control(parameter);
    if (how.unit == Unit::toggle) {
        return Look::toggle;
    }
    return how.unit == Unit::choice && how.choices.size() <= mostSegments ? Look::segments
                                                                          : Look::knob;
}

const Choice* namedValue(Parameter parameter, float value) {
    static constexpr Choice off{"Off", "Off"};
    static constexpr Choice noLimit{"No limit", "None"};
    const bool isLeast = value <= range(parameter).minimum;
    const bool isMost = value >= range(parameter).maximum;
    if ((parameter == Parameter::sideChainHighPass && isLeast) ||
        (parameter == Parameter::sideChainLowPass && isMost)) {
        return &off;
    }
    return parameter == Parameter::range && isMost ? &noLimit : nullptr;
}

bool isInForce(const ParameterValues& values, Parameter parameter) {
    switch (parameter) {
        case Parameter::makeup:
            return !values.isOn(Parameter::autoMakeup);
        case Parameter::beatDivision:
        case Parameter::beatOffset:
        case Parameter::beatLength:
        case Parameter::beatTempo:
            return values.isOn(Parameter::beat);
        case Parameter::rmsWindow:
            return values.isOn(Parameter::rms);
        case Parameter::ceiling:
            return values.isOn(Parameter::ceilingOn);
        case Parameter::midAmount:
        case Parameter::sideAmount:
            return values.isOn(Parameter::midSide);
        default:
            return true;
    }
}

}  // namespace orvalo::effect::ui
