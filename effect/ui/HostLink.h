#pragma once

#include "effect/ui/Features.h"
#include "effect/ui/PortNumbers.h"
#include "effect/ui/model/Host.h"

namespace orvalo::effect::ui {

/// Passes the user's changes on to the host and subscribes to the output ports. Skips ports that
/// the host does not know.
class HostLink final : public Host {
  public:
    HostLink(const Features& features, LV2UI_Write_Function writeFunction,
             LV2UI_Controller controller);
    ~HostLink();
    HostLink(const HostLink&) = delete;
    HostLink& operator=(const HostLink&) = delete;

    const PortNumbers& ports() const { return ports_; }

    void write(Parameter parameter, float value) override;
    void grab(Parameter parameter, bool held) override;
    /// Needs the host's map of URIs.
    void sendMidi(const std::array<std::uint8_t, 3>& message) override;

  private:
    PortNumbers ports_;
    const LV2UI_Touch* touch_;
    const LV2UI_Port_Subscribe* subscribe_;
    LV2_URID eventTransfer_ = 0;
    LV2_URID midiEvent_ = 0;
    LV2UI_Write_Function write_;
    LV2UI_Controller controller_;
};

}  // namespace orvalo::effect::ui
