#include "platform/plugin-ui/x11/LV2EmbeddedPluginUI.h"

#include <utility>

#include "platform/plugin-ui/x11/LV2PluginUIError.h"

namespace orvalo {

namespace {

// Below the toolkit's drawing, which stands at 120, so that a UI cannot hold it up.
constexpr int kTurnPriority = 125;
// Two seconds, at the least.
constexpr int kLongestTurnsWithoutWindow = 120;

}  // namespace

LV2EmbeddedPluginUI::LV2EmbeddedPluginUI(std::shared_ptr<X11Connection> connection,
                                         std::shared_ptr<LV2LocalAudioUnit> unit,
                                         LV2PluginUIData data, Place place)
    : connection_(std::move(connection)),
      unit_(std::move(unit)),
      data_(std::move(data)),
      place_(std::move(place)) {
    open();
    turns_ = std::make_unique<PluginUITurns>(kTurnPriority, [this] { tick(); });
}

LV2EmbeddedPluginUI::~LV2EmbeddedPluginUI() {
    onClosed = nullptr;
    close({});
    // A turn under way may keep it.
    container_->onSize = nullptr;
    container_->onRules = nullptr;
    container_->onGone = nullptr;
    container_->onUnusedKey = nullptr;
}

void LV2EmbeddedPluginUI::open() {
    // Never a container that had another UI in it: the X server gives the new window the
    // number of the old one, whose end is still to be reported.
    container_ = nullptr;
    container_ = std::make_shared<X11Container>(connection_, place_.toplevel, place_.size);
    container_->setStatedFixed(data_.isFixedSize);
    container_->onSize = [this](X11Size size) {
        if (pluginUI_ != nullptr) {
            enter();
            pluginUI_->setSize(size);
        }
    };
    container_->onRules = [this] {
        if (onRules) {
            onRules();
        }
    };
    container_->onGone = [this] { close("it has lost its window"); };
    container_->onUnusedKey = [this](const X11Key& key) {
        if (const auto take = onUnusedKey) {
            take(key);
        }
    };
    enter();
    pluginUI_ =
        std::make_shared<LV2PluginUI>(unit_, data_, container_->window(), place_.scaleFactor,
                                      [container = std::weak_ptr(container_)](X11Size size) {
                                          if (const auto held = container.lock()) {
                                              held->want(size);
                                          }
                                      });
    turnsWithoutWindow_ = 0;
    container_->adopt(pluginUI_->window());
    container_->place(area_, visible_);
    container_->setVisible(isVisible_);
}

void LV2EmbeddedPluginUI::place(const X11Rect& area, const X11Rect& visible) {
    area_ = area;
    visible_ = visible;
    if (container_ != nullptr) {
        container_->place(area, visible);
    }
}

void LV2EmbeddedPluginUI::setVisible(bool isVisible) {
    if (pluginUI_ == nullptr || isVisible == isVisible_) {
        return;
    }
    isVisible_ = isVisible;
    container_->setVisible(isVisible);
    turns_->setVisible(isVisible);
}

void LV2EmbeddedPluginUI::enter() const {
    if (place_.willEnter) {
        place_.willEnter();
    }
}

void LV2EmbeddedPluginUI::tick() {
    enter();
    if (pluginUI_->isOutdated()) {
        container_->release();
        pluginUI_ = nullptr;
        try {
            open();
            if (onRules) {
                onRules();
            }
        } catch (const NSError& error) {
            close(error.localizedDescription());
        }
        return;
    }
    // Its own code may run the loop, which may close it, and this object with it.
    const auto willEnter = place_.willEnter;
    const auto container = container_;
    auto ui = pluginUI_;
    const bool goesOn = ui->update();
    if (ui.use_count() == 1) {
        if (willEnter) {
            willEnter();
        }
        ui = nullptr;
        return;
    }
    if (!goesOn) {
        close("it has closed itself");
    } else if (isVisible_ && !container_->hasChild() &&
               ++turnsWithoutWindow_ == kLongestTurnsWithoutWindow) {
        close("it makes no window");
    }
}

void LV2EmbeddedPluginUI::close(const std::string& reason) {
    turns_ = nullptr;
    enter();
    container_->release();
    pluginUI_ = nullptr;
    if (const auto closed = std::exchange(onClosed, nullptr)) {
        closed(reason);
    }
}

}  // namespace orvalo
