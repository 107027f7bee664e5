#include "platform/audio/interface/LV2EmbeddedInterface.h"

#include <utility>

#include "platform/audio/interface/LV2InterfaceError.h"

namespace orvalo {

namespace {

// Below the toolkit's drawing, which stands at 120, so that an interface cannot hold it up.
constexpr int kTurnPriority = 125;
// Two seconds, at the least.
constexpr int kLongestTurnsWithoutWindow = 120;

}  // namespace

LV2EmbeddedInterface::LV2EmbeddedInterface(std::shared_ptr<X11Connection> connection,
                                           std::shared_ptr<LV2LocalAudioUnit> unit,
                                           LV2InterfaceData data, Place place)
    : connection_(std::move(connection)),
      unit_(std::move(unit)),
      data_(std::move(data)),
      place_(std::move(place)) {
    open();
    turns_ = std::make_unique<InterfaceTurns>(kTurnPriority, [this] { tick(); });
}

LV2EmbeddedInterface::~LV2EmbeddedInterface() {
    onClosed = nullptr;
    close({});
    // A turn under way may keep it.
    container_->onSize = nullptr;
    container_->onRules = nullptr;
    container_->onGone = nullptr;
    container_->onUnusedKey = nullptr;
}

void LV2EmbeddedInterface::open() {
    // Never a container that had another interface in it: the X server gives the new window the
    // number of the old one, whose end is still to be reported.
    container_ = nullptr;
    container_ = std::make_shared<X11Container>(connection_, place_.toplevel, place_.size);
    container_->setStatedFixed(data_.isFixedSize);
    container_->onSize = [this](X11Size size) {
        if (interface_ != nullptr) {
            enter();
            interface_->setSize(size);
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
    interface_ =
        std::make_shared<LV2Interface>(unit_, data_, container_->window(), place_.scaleFactor,
                                       [container = std::weak_ptr(container_)](X11Size size) {
                                           if (const auto held = container.lock()) {
                                               held->want(size);
                                           }
                                       });
    turnsWithoutWindow_ = 0;
    container_->adopt(interface_->window());
    container_->place(area_, visible_);
    container_->setVisible(isVisible_);
}

void LV2EmbeddedInterface::place(const X11Rect& area, const X11Rect& visible) {
    area_ = area;
    visible_ = visible;
    if (container_ != nullptr) {
        container_->place(area, visible);
    }
}

void LV2EmbeddedInterface::setVisible(bool isVisible) {
    if (interface_ == nullptr || isVisible == isVisible_) {
        return;
    }
    isVisible_ = isVisible;
    container_->setVisible(isVisible);
    turns_->setVisible(isVisible);
}

void LV2EmbeddedInterface::enter() const {
    if (place_.willEnter) {
        place_.willEnter();
    }
}

void LV2EmbeddedInterface::tick() {
    enter();
    if (interface_->isOutdated()) {
        container_->release();
        interface_ = nullptr;
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
    auto interface = interface_;
    const bool goesOn = interface->update();
    if (interface.use_count() == 1) {
        if (willEnter) {
            willEnter();
        }
        interface = nullptr;
        return;
    }
    if (!goesOn) {
        close("it has closed itself");
    } else if (isVisible_ && !container_->hasChild() &&
               ++turnsWithoutWindow_ == kLongestTurnsWithoutWindow) {
        close("it makes no window");
    }
}

void LV2EmbeddedInterface::close(const std::string& reason) {
    turns_ = nullptr;
    enter();
    container_->release();
    interface_ = nullptr;
    if (const auto closed = std::exchange(onClosed, nullptr)) {
        closed(reason);
    }
}

}  // namespace orvalo
