#include "platform/plugin-ui/bridge/BridgedEmbeddedPluginUI.h"

#include <glib.h>

#include <limits>
#include <utility>
#include <variant>

#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

namespace {

// How long a visible UI may be without a window, in milliseconds. Longer than ServiceLost needs to
// arrive after the windows of a service that died.
constexpr unsigned kWindowTimeout = 2000;

/// A pointer whose last copy may be released on any thread; the object itself is released on the
/// main thread.
std::shared_ptr<const void> releasedOnMainThread(std::shared_ptr<const void> object) {
    using Held = std::shared_ptr<const void>;
    return {new Held(std::move(object)),
            [](const Held* held) { DispatchQueue::main()->async([held] { delete held; }); }};
}

}  // namespace

BridgedEmbeddedPluginUI::BridgedEmbeddedPluginUI(std::shared_ptr<X11Connection> connection,
                                                 std::shared_ptr<BridgedAudioUnit> unit,
                                                 bool isFixedSize, Parent parent)
    : EmbeddedPluginUI(std::move(connection), std::move(parent), isFixedSize),
      unit_(std::move(unit)) {
    unit_->startAgain();
    channel().setListener([this](const PluginUIEvent& event) {
        // handle() may destroy this object.
        std::visit([this](const auto& any) { handle(any); }, event);
    });
    setRestarting(container() == nullptr);
}

BridgedEmbeddedPluginUI::~BridgedEmbeddedPluginUI() {
    leave();
    channel().setListener({});
}

float BridgedEmbeddedPluginUI::controlValue(std::uint32_t port) const {
    return audio_ == nullptr ? std::numeric_limits<float>::quiet_NaN()
                             : audio_->controlValues()[port].load(std::memory_order_relaxed);
}

void BridgedEmbeddedPluginUI::open() {
    makeContainer();
    isOpened_ = false;
    channel().open(display(), container()->window(), parent().scaleFactor);
}

void BridgedEmbeddedPluginUI::resized(X11Size size) {
    channel().resize(size.width, size.height);
}

void BridgedEmbeddedPluginUI::visibilityChanged() {
    if (container() != nullptr && isOpened_) {
        channel().show(isVisible());
        expectWindow();
    }
}

void BridgedEmbeddedPluginUI::handle(const ServiceReady& event) {
    audio_ = event.audio;
    open();
}

void BridgedEmbeddedPluginUI::handle(const ServiceLost& /*event*/) {
    audio_ = nullptr;
    timeout_ = nullptr;
    if (container() != nullptr) {
        container()->release();
        dropContainer();
    }
    setRestarting(true);
}

void BridgedEmbeddedPluginUI::handle(const ServiceGivenUp& /*event*/) {
    audio_ = nullptr;
    close("the effect has died too often, and playback goes on dry");
}

void BridgedEmbeddedPluginUI::handle(const PluginUIRefused& event) {
    leave();
    reportRefused(event.error);
}

void BridgedEmbeddedPluginUI::handle(const bridge::PluginUIOpened& event) {
    if (container() == nullptr || std::exchange(isOpened_, true)) {
        return;
    }
    container()->adopt(event.window);
    channel().show(isVisible());
    expectWindow();
    setRestarting(false);
}

void BridgedEmbeddedPluginUI::handle(const bridge::PluginUIResizeRequest& event) {
    if (container() != nullptr) {
        container()->requestSize({event.width, event.height});
    }
}

void BridgedEmbeddedPluginUI::handle(const bridge::PluginUIClosed& event) {
    close(event.reason);
}

void BridgedEmbeddedPluginUI::handle(const bridge::PluginUIOutdated& /*event*/) {
    leave();
    open();
}

void BridgedEmbeddedPluginUI::leave() {
    timeout_ = nullptr;
    if (container() != nullptr) {
        container()->release();
        channel().close(releasedOnMainThread(container()->hold()));
        dropContainer();
    }
}

void BridgedEmbeddedPluginUI::close(const std::string& reason) {
    leave();
    reportClosed(reason);
}

bool BridgedEmbeddedPluginUI::isWindowMissing() const {
    return container() != nullptr && isVisible() && !container()->hasChild();
}

void BridgedEmbeddedPluginUI::expectWindow() {
    timeout_ = nullptr;
    if (!isWindowMissing()) {
        return;
    }
    timeout_.reset(g_timeout_source_new(kWindowTimeout));
    g_source_set_callback(
        timeout_.get(),
        [](void* data) -> gboolean {
            auto& self = *static_cast<BridgedEmbeddedPluginUI*>(data);
            self.timeout_ = nullptr;
            if (self.isWindowMissing()) {
                self.close("it has no window");
            }
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(timeout_.get(), nullptr);
}

}  // namespace orvalo
