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

/// What an interface wrote to a port.
struct PortWrite {
    std::uint32_t port;
    float value;
    bool operator==(const PortWrite&) const = default;
};

void PrintTo(const PortWrite& write, std::ostream* stream);

/// The built interface in a host's window, loaded and called as hosts do it.
class EmbeddedPluginUI {
  public:
    struct Offer {
        /// Whether anything but the parent is offered.
        bool all = true;
        /// Scale factor of the screen.
        float scale = 1.0F;
        /// Added to every port's number, for a host that numbers them otherwise.
        std::uint32_t shift = 0;
        /// The parent, or another window; none at all where it is absent.
        std::optional<Window> parent;
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

    /// A port of the bundle has a value.
    void send(const std::string& symbol, float value);
    void sendRaw(std::uint32_t port, std::uint32_t size, std::uint32_t format, const void* buffer);

    /// One call of idle; its result.
    int idle();
    /// Idles until the condition holds; false when it does not in ten seconds.
    bool idleUntil(const std::function<bool()>& condition);
    /// Idles until all that the interface has to draw has been drawn.
    void settle();

    /// The host's side of ui:resize on the interface; its result.
    int resize(int width, int height);

    effect::ui::Layout layout(float scale = 1.0F) const;
    Pixels pixels() const { return host_.pixels(window_); }

    std::vector<PortWrite> writes;
    /// "grab 7", "let 7".
    std::vector<std::string> touches;
    std::vector<std::string> subscriptions;
    /// The sizes that the interface asked its host for.
    std::vector<std::pair<int, int>> sizes;

    static std::uint32_t portOf(const std::string& symbol);

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
};

}  // namespace orvalo::testing
