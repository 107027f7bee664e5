#pragma once

#include <lv2/options/options.h>
#include <lv2/ui/ui.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "effect/ui/model/Layout.h"
#include "tests/effect/UridMap.h"
#include "tests/effect/ui/HostWindow.h"

namespace orvalo::testing {

/// A value that the UI wrote to a port.
struct PortWrite {
    std::uint32_t port;
    float value;
    bool operator==(const PortWrite&) const = default;
};

void PrintTo(const PortWrite& write, std::ostream* stream);

/// The built plug-in UI in a host window, loaded and called as by a host.
class EmbeddedPluginUI {
  public:
    struct Offer {
        /// Whether the host offers the other features beside the parent.
        bool all = true;
        /// Scale factor of the screen.
        float scale = 1.0F;
        /// Added to every port number, for a host with other numbers.
        std::uint32_t shift = 0;
        /// The parent window; no parent feature when absent.
        std::optional<Window> parent;
        const char* plugin = "urn:tessaly:orvalo";
    };

    explicit EmbeddedPluginUI(HostWindow& host)
        : EmbeddedPluginUI(host, Offer{.parent = host.id()}) {}
    EmbeddedPluginUI(HostWindow& host, const Offer& offer);
    ~EmbeddedPluginUI() { close(); }
    EmbeddedPluginUI(const EmbeddedPluginUI&) = delete;
    EmbeddedPluginUI& operator=(const EmbeddedPluginUI&) = delete;

    bool isOpen() const { return handle_ != nullptr; }
    Window window() const { return window_; }
    void close();

    /// Sends a port event. port: number in the bundle.
    void send(const std::string& symbol, float value);
    /// Sends the run count of a running effect.
    void run() { send("run_count", static_cast<float>(++runs_)); }
    /// Sends the effect's event with all bands at a level.
    void sendSpectrum(float level);
    void sendRaw(std::uint32_t port, std::uint32_t size, std::uint32_t format, const void* buffer);

    /// Calls idle() once and returns its result.
    int idle();
    /// Calls idle() until the condition holds; false after ten seconds.
    bool idleUntil(const std::function<bool()>& condition);
    /// Calls idle() until the UI has drawn everything.
    void settle();

    /// Calls ui:resize of the UI and returns its result.
    int resize(int width, int height);

    effect::ui::Layout layout(float scale = 1.0F) const;
    Pixels pixels() const { return host_.pixels(window_); }

    std::vector<PortWrite> writes;
    /// The MIDI messages that the UI wrote as atoms to the MIDI input, in hexadecimal: "90 30 64".
    std::vector<std::string> messages;
    /// How often the UI asked for the detector's spectrum.
    int spectrumRequests = 0;
    /// The ui:touch calls, by port: "grab 7" when grabbed, "let 7" when released.
    std::vector<std::string> touches;
    std::vector<std::string> subscriptions;
    /// The sizes that the UI requested from the host.
    std::vector<std::pair<int, int>> sizes;

    static std::uint32_t portOf(const std::string& symbol);

    /// A subscription: the port's number, and the protocol's URI if it is not that of floats.
    std::string describe(std::uint32_t port, std::uint32_t protocol);
    /// Called by the UI.
    void takeWrite(std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
                   const void* buffer);

  private:
    HostWindow& host_;
    Offer offer_;
    UridMap uris_;
    LV2UI_Port_Map portMap_;
    LV2UI_Touch touch_;
    LV2UI_Port_Subscribe subscribe_;
    LV2UI_Resize resize_;
    const LV2UI_Descriptor* descriptor_;
    const LV2UI_Idle_Interface* idle_;
    LV2UI_Handle handle_ = nullptr;
    Window window_ = 0;
    int runs_ = 0;
};

}  // namespace orvalo::testing
