#pragma once

#include "effect/ui/Features.h"
#include "effect/ui/PortNumbers.h"
#include "effect/ui/model/Host.h"

namespace orvalo::effect::ui {

/// Passes what the user does on to the host, by the numbers of its ports. Ports that the host does
/// not know are left out.
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

  private:
    PortNumbers ports_;
    const LV2UI_Touch* touch_;
    const LV2UI_Port_Subscribe* subscribe_;
    LV2UI_Write_Function write_;
    LV2UI_Controller controller_;
};

}  // namespace orvalo::effect::ui
