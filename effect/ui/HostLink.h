#pragma once

#include <optional>

#include "effect/dsp/SpectrumBank.h"
#include "effect/ui/Features.h"
#include "effect/ui/PortNumbers.h"
#include "effect/ui/model/Host.h"

namespace orvalo::effect::ui {

/// Passes the user's changes and requests on to the host, and subscribes to the output ports.
/// Ignores ports that the host does not know.
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

    /// Asks the effect for its detector's spectrum. Needs the host's map of URIs.
    void requestSpectrum();
    /// The spectrum in an event of the port; absent for another port or event.
    std::optional<SpectrumBank::Levels> spectrumIn(std::uint32_t port, std::uint32_t size,
                                                   std::uint32_t format, const void* buffer) const;

  private:
    void writeEvent(LV2_URID type, const void* body, std::uint32_t size);
    void setSubscribed(bool isSubscribed);

    PortNumbers ports_;
    const LV2UI_Touch* touch_;
    const LV2UI_Port_Subscribe* subscribe_;
    LV2_URID eventTransfer_ = 0;
    LV2_URID midiEvent_ = 0;
    LV2_URID object_ = 0;
    LV2_URID watchDetector_ = 0;
    LV2_URID detectorSpectrum_ = 0;
    LV2_URID bandLevels_ = 0;
    LV2UI_Write_Function write_;
    LV2UI_Controller controller_;
};

}  // namespace orvalo::effect::ui
