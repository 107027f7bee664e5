#include "platform/plugin-ui/x11/EmbeddedPluginUI.h"

#include <X11/Xlib.h>

#include <utility>

namespace orvalo {

EmbeddedPluginUI::EmbeddedPluginUI(std::shared_ptr<X11Connection> connection, Parent parent,
                                   bool isFixedSize)
    : connection_(std::move(connection)), parent_(std::move(parent)), isFixedSize_(isFixedSize) {}

EmbeddedPluginUI::~EmbeddedPluginUI() {
    dropContainer();
}

std::string EmbeddedPluginUI::display() const {
    return DisplayString(connection_->display());
}

void EmbeddedPluginUI::makeContainer() {
    // The X server may give the new UI's window the number of the old one before the old container
    // has received its DestroyNotify; and two containers would handle the toplevel's keys twice.
    dropContainer();
    container_ = std::make_shared<X11Container>(connection_, parent_.toplevel, parent_.size);
    container_->setFixedSize(isFixedSize_);
    container_->onSize = [this](X11Size size) { resized(size); };
    container_->onRules = [this] { reportChange(); };
    container_->onGone = [this] { lostWindow(); };
    container_->keyboard().onUnusedKey = [this](const X11Key& key) {
        if (const auto use = onUnusedKey) {
            use(key);
        }
    };
    container_->place(area_, visiblePart_);
    container_->setVisible(isVisible_);
}

void EmbeddedPluginUI::dropContainer() {
    if (const auto dropped = std::exchange(container_, nullptr)) {
        // A call into the UI's code may hold the container longer.
        dropped->onSize = nullptr;
        dropped->onRules = nullptr;
        dropped->onGone = nullptr;
        dropped->keyboard().onUnusedKey = nullptr;
    }
}

void EmbeddedPluginUI::place(const X11Rect& area, const X11Rect& visible) {
    area_ = area;
    visiblePart_ = visible;
    if (container_ != nullptr) {
        container_->place(area, visible);
    }
}

void EmbeddedPluginUI::setVisible(bool isVisible) {
    if (isVisible == isVisible_) {
        return;
    }
    isVisible_ = isVisible;
    if (container_ != nullptr) {
        container_->setVisible(isVisible);
    }
    visibilityChanged();
}

const X11SizeRules& EmbeddedPluginUI::rules() const {
    static const X11SizeRules none;
    return container_ == nullptr ? none : container_->rules();
}

void EmbeddedPluginUI::setRestarting(bool isRestarting) {
    if (std::exchange(isRestarting_, isRestarting) != isRestarting) {
        reportChange();
    }
}

void EmbeddedPluginUI::reportChange() const {
    if (onChange) {
        onChange();
    }
}

void EmbeddedPluginUI::reportClosed(const std::string& reason) {
    if (const auto closed = std::exchange(onClosed, nullptr)) {
        closed(reason);
    }
}

void EmbeddedPluginUI::reportRefused(const std::string& line) {
    if (const auto refused = std::exchange(onRefused, nullptr)) {
        refused(line);
    }
}

}  // namespace orvalo
