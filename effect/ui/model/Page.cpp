#include "effect/ui/model/Page.h"

#include <algorithm>
#include <array>

namespace orvalo::effect::ui {

namespace {

constexpr std::array<Parameter, 6> sideChainParameters{Parameter::sideChainSource,
                                                       Parameter::sideChainHighPass,
                                                       Parameter::sideChainLowPass,
                                                       Parameter::sideChainListen,
                                                       Parameter::rms,
                                                       Parameter::rmsWindow};
constexpr std::array<Parameter, 6> dynamicsParameters{Parameter::hold,     Parameter::autoMakeup,
                                                      Parameter::range,    Parameter::lookAhead,
                                                      Parameter::adaptive, Parameter::oversampling};
constexpr std::array<Parameter, 6> outputParameters{Parameter::ceilingOn, Parameter::ceiling,
                                                    Parameter::midSide,   Parameter::link,
                                                    Parameter::midAmount, Parameter::sideAmount};
constexpr std::array<Parameter, 5> beatParameters{Parameter::beat, Parameter::beatDivision,
                                                  Parameter::beatOffset, Parameter::beatLength,
                                                  Parameter::beatTempo};

}  // namespace

const PageName& nameOf(Page page) {
    static constexpr std::array<PageName, pageCount> names{{{"History", "Hist."},
                                                            {"Side-chain", "Chain"},
                                                            {"Dynamics", "Dyn."},
                                                            {"Output", "Out"},
                                                            {"Beats", "Beats"}}};
    return names.at(static_cast<std::size_t>(page));
}

std::span<const Parameter> parametersOf(Page page) {
    switch (page) {
        case Page::history:
            break;
        case Page::sideChain:
            return sideChainParameters;
        case Page::dynamics:
            return dynamicsParameters;
        case Page::output:
            return outputParameters;
        case Page::beats:
            return beatParameters;
    }
    return {};
}

std::optional<Page> pageOf(Parameter parameter) {
    for (std::size_t i = 0; i < pageCount; ++i) {
        const auto page = static_cast<Page>(i);
        if (std::ranges::count(parametersOf(page), parameter) != 0) {
            return page;
        }
    }
    return std::nullopt;
}

bool isPageInUse(Page page, const ParameterValues& values) {
    return std::ranges::any_of(parametersOf(page), [&](Parameter parameter) {
        return values[parameter] != range(parameter).standard;
    });
}

}  // namespace orvalo::effect::ui
