#include "programs/effect-service/ServicePluginUI.h"

#include <X11/Xlib.h>
#include <glib.h>

#include <utility>

#include "platform/plugin-ui/x11/X11Errors.h"

namespace orvalo {

namespace {

std::shared_ptr<X11Connection> openServer() {
    // The effect plays on without the X server. Xlib still ends the process for a connection that
    // the UI has opened.
    XSetIOErrorHandler([](Display* /*lost*/) { return 0; });
    return X11Connection::open({});
}

/// Sets DISPLAY for the UI, which may end the process where it finds no server, and checks the
/// window. Throws NSError.
void useDisplay(const PluginUIParts& parts, const std::string& display, unsigned long window) {
    g_setenv("DISPLAY", display.c_str(), TRUE);
    const bool isKnown =
        parts.server != nullptr && display == DisplayString(parts.server->display());
    const auto server = isKnown ? parts.server : X11Connection::open(display);
    if (server == nullptr) {
        throw pluginUIError(LV2ErrorCode::noPluginUI, parts.data.plugin,
                            "the X server \"" + display + "\" cannot be reached");
    }
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(server->display(), window, &attributes) == 0) {
        throw pluginUIError(LV2ErrorCode::noPluginUI, parts.data.plugin,
                            "the window that it belongs in is gone");
    }
    X11Errors::installHandler();
}

}  // namespace

PluginUIParts::PluginUIParts(const LV2LocalAudioUnit& unit)
    : data(LV2PluginUIData::read(unit.world(), unit.data())), library(data), server(openServer()) {}

ServicePluginUI::ServicePluginUI(LoadedEffect& effect, ServiceConnection& host,
                                 std::shared_ptr<const PluginUIParts> parts,
                                 const bridge::OpenPluginUI& request, bool writesPresets)
    : effect_(effect), host_(host), parts_(std::move(parts)) {
    useDisplay(*parts_, request.display, request.window);
    pluginUI_ = std::make_unique<LV2PluginUI>(
        effect_.unit(), parts_->data, request.window, request.scaleFactor,
        [this](X11Size size) {
            host_.send(bridge::PluginUIResizeRequest{size.width, size.height});
        },
        writesPresets ? presetRequests() : LV2PresetRequests{});
    timer_ = std::make_unique<PluginUITimer>(G_PRIORITY_DEFAULT, [this] { update(); });
}

LV2PresetRequests ServicePluginUI::presetRequests() {
    return {
        .write =
            [this](const std::string& folder, const std::string& label, const std::string& comment,
                   const LV2PresetRequests::Values& values) {
                bridge::WritePreset message{folder, label, comment, {}};
                for (const auto& port : effect_.unit()->data().ports) {
                    for (const auto& [symbol, value] : values) {
                        if (symbol == port.symbol) {
                            message.values.push_back({port.index, value});
                        }
                    }
                }
                host_.send(message);
            },
        .remove = [this](const std::string& folder) { host_.send(bridge::RemovePreset{folder}); },
    };
}

void ServicePluginUI::setVisible(bool isVisible) {
    if (timer_ != nullptr) {
        timer_->setVisible(isVisible);
    }
}

void ServicePluginUI::setSize(X11Size size) {
    if (timer_ != nullptr) {
        pluginUI_->setSize(size);
    }
}

void ServicePluginUI::update() {
    const auto self = shared_from_this();
    const bool isOutdated = pluginUI_->isOutdated();
    const bool isOpen = !isOutdated && pluginUI_->update();
    if (timer_ == nullptr) {
        return;
    }
    // Before the messages below, so that the host has the controls that the UI set last.
    effect_.publishControls();
    if (isOutdated) {
        end();
        host_.send(bridge::PluginUIOutdated{});
    } else if (!isOpen) {
        end();
        host_.send(bridge::PluginUIClosed{"it has closed itself"});
    }
}

}  // namespace orvalo
