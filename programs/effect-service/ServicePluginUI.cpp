#include "programs/effect-service/ServicePluginUI.h"

#include <X11/Xlib.h>
#include <glib.h>

#include <utility>

#include "platform/plugin-ui/x11/LV2PluginUIError.h"
#include "platform/plugin-ui/x11/X11Errors.h"

namespace orvalo {

namespace {

LV2PluginUIData readData(const LV2LocalAudioUnit& unit) {
    const LV2World::Access access(unit.world());
    return LV2PluginUIData::read(access, unit.data());
}

/// The sound goes on without the server. For what a UI has opened itself Xlib still ends
/// the process, behind this.
int bearLoss(Display* /*lost*/) {
    return 0;
}

std::shared_ptr<X11Connection> openServer() {
    XSetIOErrorHandler(bearLoss);
    return X11Connection::open({});
}

/// UIs name the server by the environment, and end the process where there is none.
void enterDisplay(const PluginUIParts& parts, const std::string& display, unsigned long window) {
    g_setenv("DISPLAY", display.c_str(), TRUE);
    const bool isKnown =
        parts.server != nullptr && display == DisplayString(parts.server->display());
    const auto server = isKnown ? parts.server : X11Connection::open(display);
    if (server == nullptr) {
        throw lv2PluginUIError(LV2ErrorCode::noPluginUI, parts.data.plugin,
                               "the X server \"" + display + "\" cannot be reached");
    }
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(server->display(), window, &attributes) == 0) {
        throw lv2PluginUIError(LV2ErrorCode::noPluginUI, parts.data.plugin,
                               "the window that it belongs in is gone");
    }
    X11Errors::takeOver();
}

}  // namespace

PluginUIParts::PluginUIParts(const LV2LocalAudioUnit& unit)
    : data(readData(unit)), library(data), server(openServer()) {}

ServicePluginUI::ServicePluginUI(const std::shared_ptr<LV2LocalAudioUnit>& unit,
                                 std::shared_ptr<const PluginUIParts> parts,
                                 const std::string& display, unsigned long window,
                                 double scaleFactor, Events events)
    : parts_(std::move(parts)), events_(std::move(events)) {
    enterDisplay(*parts_, display, window);
    pluginUI_ = std::make_unique<LV2PluginUI>(unit, parts_->data, window, scaleFactor,
                                              [this](X11Size size) { events_.wants(size); });
    turns_ = std::make_unique<PluginUITurns>(G_PRIORITY_DEFAULT, [this] { tick(); });
}

void ServicePluginUI::setVisible(bool isVisible) {
    if (turns_ != nullptr) {
        turns_->setVisible(isVisible);
    }
}

void ServicePluginUI::setSize(X11Size size) {
    if (turns_ != nullptr) {
        pluginUI_->setSize(size);
    }
}

void ServicePluginUI::tick() {
    const auto self = shared_from_this();
    const bool isOutdated = pluginUI_->isOutdated();
    const bool goesOn = !isOutdated && pluginUI_->update();
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
