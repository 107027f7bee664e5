#include "platform/audio/bridge/service/ServiceInterface.h"

#include <X11/Xlib.h>
#include <glib.h>

#include <utility>

#include "platform/audio/interface/LV2InterfaceError.h"
#include "platform/audio/interface/X11Errors.h"

namespace orvalo {

namespace {

LV2InterfaceData readData(const LV2LocalAudioUnit& unit) {
    const LV2World::Access access(unit.world());
    return LV2InterfaceData::read(access, unit.data());
}

/// The sound goes on without the server. For what an interface has opened itself Xlib still ends
/// the process, behind this.
int bearLoss(Display* /*lost*/) {
    return 0;
}

std::shared_ptr<X11Connection> openServer() {
    XSetIOErrorHandler(bearLoss);
    return X11Connection::open({});
}

/// Interfaces name the server by the environment, and end the process where there is none.
void enterDisplay(const InterfaceParts& parts, const std::string& display, unsigned long window) {
    g_setenv("DISPLAY", display.c_str(), TRUE);
    const bool isKnown =
        parts.server != nullptr && display == DisplayString(parts.server->display());
    const auto server = isKnown ? parts.server : X11Connection::open(display);
    if (server == nullptr) {
        throw lv2InterfaceError(LV2ErrorCode::noInterface, parts.data.plugin,
                                "the X server \"" + display + "\" cannot be reached");
    }
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(server->display(), window, &attributes) == 0) {
        throw lv2InterfaceError(LV2ErrorCode::noInterface, parts.data.plugin,
                                "the window that it belongs in is gone");
    }
    X11Errors::takeOver();
}

}  // namespace

InterfaceParts::InterfaceParts(const LV2LocalAudioUnit& unit)
    : data(readData(unit)), library(data), server(openServer()) {}

ServiceInterface::ServiceInterface(const std::shared_ptr<LV2LocalAudioUnit>& unit,
                                   std::shared_ptr<const InterfaceParts> parts,
                                   const std::string& display, unsigned long window,
                                   double scaleFactor, Events events)
    : parts_(std::move(parts)), events_(std::move(events)) {
    enterDisplay(*parts_, display, window);
    interface_ = std::make_unique<LV2Interface>(unit, parts_->data, window, scaleFactor,
                                                [this](X11Size size) { events_.wants(size); });
    turns_ = std::make_unique<InterfaceTurns>(G_PRIORITY_DEFAULT, [this] { tick(); });
}

void ServiceInterface::setVisible(bool isVisible) {
    if (turns_ != nullptr) {
        turns_->setVisible(isVisible);
    }
}

void ServiceInterface::setSize(X11Size size) {
    if (turns_ != nullptr) {
        interface_->setSize(size);
    }
}

void ServiceInterface::tick() {
    const auto self = shared_from_this();
    const bool isOutdated = interface_->isOutdated();
    const bool goesOn = !isOutdated && interface_->update();
    if (turns_ == nullptr) {
        return;
    }
    // What it has set last is there before it is told that there is no more.
    events_.turned();
    if (!goesOn) {
        end();
        (isOutdated ? events_.outdated : events_.closed)();
    }
}

}  // namespace orvalo
