#include "effect/ui/PortNumbers.h"

#include <algorithm>

namespace orvalo::effect::ui {

namespace {

template <typename Kind, std::size_t count>
std::optional<Kind> find(const std::array<std::uint32_t, count>& numbers, std::uint32_t port) {
    const auto found = std::find(numbers.begin(), numbers.end(), port);
    if (port == LV2UI_INVALID_PORT_INDEX || found == numbers.end()) {
        return std::nullopt;
    }
    return static_cast<Kind>(found - numbers.begin());
}

}  // namespace

PortNumbers::PortNumbers(const LV2UI_Port_Map* map) {
    const auto number = [map](const char* symbol, std::uint32_t otherwise) {
        return map == nullptr ? otherwise : map->port_index(map->handle, symbol);
    };
    midiInput_ = number("midi_in", 0);
    midiOutput_ = number("midi_out", 1);
    for (std::size_t i = 0; i < parameterCount; ++i) {
        parameters_.at(i) = number(parameterRanges.at(i).symbol, parameterRanges.at(i).port);
    }
    for (std::size_t i = 0; i < readingPorts.size(); ++i) {
        readings_.at(i) = number(readingPorts.at(i).symbol, readingPorts.at(i).port);
    }
}

std::uint32_t PortNumbers::of(Parameter parameter) const {
    return parameters_.at(static_cast<std::size_t>(parameter));
}

std::uint32_t PortNumbers::of(Reading reading) const {
    return readings_.at(static_cast<std::size_t>(reading));
}

std::optional<Parameter> PortNumbers::parameterAt(std::uint32_t port) const {
    return find<Parameter>(parameters_, port);
}

std::optional<Reading> PortNumbers::readingAt(std::uint32_t port) const {
    return find<Reading>(readings_, port);
}

}  // namespace orvalo::effect::ui
