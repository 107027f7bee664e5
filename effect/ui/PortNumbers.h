#pragma once

#include <lv2/ui/ui.h>

#include <array>
#include <cstdint>
#include <optional>

#include "effect/Readings.h"
#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// The numbers of the effect's ports in the host.
class PortNumbers {
  public:
    /// map: the host's map of symbols to port numbers; if null, the numbers in orvalo.ttl are used.
    explicit PortNumbers(const LV2UI_Port_Map* map);

    /// LV2UI_INVALID_PORT_INDEX for a port that the host does not know.
    std::uint32_t ofMidiInput() const { return midiInput_; }
    std::uint32_t ofMidiOutput() const { return midiOutput_; }
    std::uint32_t of(Parameter parameter) const;
    std::uint32_t of(Reading reading) const;

    std::optional<Parameter> parameterAt(std::uint32_t port) const;
    std::optional<Reading> readingAt(std::uint32_t port) const;

  private:
    std::uint32_t midiInput_;
    std::uint32_t midiOutput_;
    std::array<std::uint32_t, parameterCount> parameters_{};
    std::array<std::uint32_t, readingPorts.size()> readings_{};
};

}  // namespace orvalo::effect::ui
