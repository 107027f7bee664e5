#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// What is shown between the curve and the pad: the history, or the controls of one of the panels
/// that open in its place.
enum class Page : std::uint8_t { history, sideChain, dynamics, output, beats };
inline constexpr std::size_t pageCount = 5;

/// The names on the page's tab; the second one is for narrow tabs.
struct PageName {
    const char* name;
    const char* shortName;
};
const PageName& nameOf(Page page);

/// The controls of a page, in the order of the parameters.
std::span<const Parameter> parametersOf(Page page);

/// Absent for a control that is always shown.
std::optional<Page> pageOf(Parameter parameter);

/// Whether a page has a picture above its controls.
constexpr bool hasGraph(Page page) {
    return page == Page::sideChain || page == Page::beats;
}

/// Whether a control of the page has another value than its default: the page's tab is marked.
bool isPageInUse(Page page, const ParameterValues& values);

}  // namespace orvalo::effect::ui
