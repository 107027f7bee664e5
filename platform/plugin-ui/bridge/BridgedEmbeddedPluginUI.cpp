#include "platform/plugin-ui/bridge/BridgedEmbeddedPluginUI.h"

#include <X11/Xlib.h>
#include <glib.h>

#include <utility>

#include "platform/audio/bridge/host/BridgedPluginUIListener.h"
#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

namespace {

// How long a UI on screen may be without a window; also longer than the news of a
// process's end take after its windows have gone.
constexpr unsigned kPatience = 2000;

/// Something that may be let go of on any thread, and goes on the main thread.
std::shared_ptr<const void> goingOnMain(std::shared_ptr<const void> held) {
    using Held = std::shared_ptr<const void>;
    return {new Held(std::move(held)),
            [](const Held* last) { DispatchQueue::main()->async([last] { delete last; }); }};
}

}  // namespace

/// What the process says, for a UI that may go inside any of its answers.
class BridgedEmbeddedPluginUI::Listener : public BridgedPluginUIListener {
  public:
    explicit Listener(BridgedEmbeddedPluginUI& owner) : owner_(owner) {}

    void processReady() override { owner_.open(); }
    void processGone() override { owner_.processGone(); }
    void processGivenUp() override {
        owner_.processGone();
        owner_.close("the effect has died too often, and its input passes through unchanged");
    }
    void pluginUIOpened(std::uint64_t window) override { owner_.opened(window); }
    void pluginUIRefused(const std::string& error) override { owner_.close(error); }
    void pluginUIWants(std::int32_t width, std::int32_t height) override {
        if (owner_.container_ != nullptr) {
            owner_.container_->want({width, height});
        }
    }
    void pluginUIClosed(const std::string& reason) override { owner_.close(reason); }
    void pluginUIOutdated() override {
        owner_.leave();
        owner_.open();
    }

  private:
    BridgedEmbeddedPluginUI& owner_;
};

BridgedEmbeddedPluginUI::BridgedEmbeddedPluginUI(std::shared_ptr<X11Connection> connection,
                                                 std::shared_ptr<BridgedAudioUnit> unit,
                                                 bool isFixedSize, Place place)
    : connection_(std::move(connection)),
      unit_(std::move(unit)),
      isFixedSize_(isFixedSize),
      place_(std::move(place)),
      listener_(std::make_shared<Listener>(*this)) {
    channel().setListener(listener_);
    isAway_ = container_ == nullptr;
}

BridgedEmbeddedPluginUI::~BridgedEmbeddedPluginUI() {
    leave();
    channel().setListener({});
}

void BridgedEmbeddedPluginUI::open() {
    // Before another looks after the toplevel's keys.
    container_ = nullptr;
    container_ = std::make_unique<X11Container>(connection_, place_.toplevel, place_.size);
    container_->setStatedFixed(isFixedSize_);
    container_->onSize = [this](X11Size size) { channel().resize(size.width, size.height); };
    container_->onRules = [this] {
        if (onRules) {
            onRules();
        }
    };
    // Either its process has ended, of which it will be heard, or it is for the UI to make
    // another.
    container_->onGone = [this] { expectWindow(); };
    container_->onUnusedKey = [this](const X11Key& key) {
        if (const auto take = onUnusedKey) {
            take(key);
        }
    };
    isOpened_ = false;
    channel().open(DisplayString(connection_->display()), container_->window(), place_.scaleFactor);
}

void BridgedEmbeddedPluginUI::opened(std::uint64_t window) {
    if (container_ == nullptr || isOpened_) {
        return;
    }
    isOpened_ = true;
    container_->adopt(window);
    container_->place(area_, visible_);
    container_->setVisible(isVisible_);
    channel().show(isVisible_);
    expectWindow();
    if (std::exchange(isAway_, false) && onAway) {
        onAway(false);
    }
}

void BridgedEmbeddedPluginUI::place(const X11Rect& area, const X11Rect& visible) {
    area_ = area;
    visible_ = visible;
    if (container_ != nullptr) {
        container_->place(area, visible);
    }
}

void BridgedEmbeddedPluginUI::setVisible(bool isVisible) {
    if (isVisible == isVisible_) {
        return;
    }
    isVisible_ = isVisible;
    if (container_ != nullptr && isOpened_) {
        container_->setVisible(isVisible);
        channel().show(isVisible);
        expectWindow();
    }
}

const X11SizeRules& BridgedEmbeddedPluginUI::rules() const {
    static const X11SizeRules none;
    return container_ == nullptr ? none : container_->rules();
}

void BridgedEmbeddedPluginUI::processGone() {
    setPatience(0);
    if (container_ != nullptr) {
        container_->release();
        container_ = nullptr;
    }
    if (!std::exchange(isAway_, true) && onAway) {
        onAway(true);
    }
}

void BridgedEmbeddedPluginUI::leave() {
    setPatience(0);
    if (container_ != nullptr) {
        container_->release();
        channel().close(goingOnMain(container_->hold()));
        container_ = nullptr;
    }
}

void BridgedEmbeddedPluginUI::close(const std::string& reason) {
    leave();
    if (const auto closed = std::exchange(onClosed, nullptr)) {
        closed(reason);
    }
}

void BridgedEmbeddedPluginUI::expectWindow() {
    const bool isMissing = container_ != nullptr && isVisible_ && !container_->hasChild();
    setPatience(isMissing ? kPatience : 0);
}

void BridgedEmbeddedPluginUI::setPatience(unsigned milliseconds) {
    if (patience_ != nullptr) {
        g_source_destroy(patience_.get());
        patience_ = nullptr;
    }
    if (milliseconds == 0) {
        return;
    }
    patience_.reset(g_timeout_source_new(milliseconds));
    g_source_set_callback(
        patience_.get(),
        [](void* data) -> gboolean {
            auto& self = *static_cast<BridgedEmbeddedPluginUI*>(data);
            if (self.container_ != nullptr && self.isVisible_ && !self.container_->hasChild()) {
                self.close("it has no window");
            } else {
                self.setPatience(0);
            }
            // Destroyed by now.
            return G_SOURCE_CONTINUE;
        },
        this, nullptr);
    g_source_attach(patience_.get(), nullptr);
}

}  // namespace orvalo
