#include "platform/plugin-ui/view/LV2ViewController.h"

#include <gdk/x11/gdkx.h>
#include <glib.h>
#include <gtk/gtk.h>

#include <utility>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/unit/ExpectedRendering.h"
#include "platform/plugin-ui/bridge/BridgedEmbeddedPluginUI.h"
#include "platform/plugin-ui/generic/GenericViewController.h"
#include "platform/plugin-ui/view/WindowShortcuts.h"
#include "platform/plugin-ui/x11/LV2EmbeddedPluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUILibrary.h"
#include "platform/plugin-ui/x11/X11Errors.h"

namespace orvalo {

namespace {

/// The connection that all open UIs share; null when the X server accepts none.
std::shared_ptr<X11Connection> connection() {
    static std::weak_ptr<X11Connection> open;
    auto result = open.lock();
    if (result == nullptr) {
        auto* display = gdk_display_get_default();
        X11Errors::leaveToToolkit(gdk_x11_display_get_xdisplay(display));
        result = X11Connection::open(gdk_display_get_name(display));
        open = result;
    }
    return result;
}

/// Whether the program's windows are X11 windows, which alone embed plug-in UIs.
bool canEmbed() {
    auto* display = gdk_display_get_default();
    return display != nullptr && GDK_IS_X11_DISPLAY(display);
}

// Milliseconds between two looks at the control values, which few people need quickly.
constexpr unsigned kControlsPeriod = 500;

constexpr const char* kNoX11 =
    "it is an X11 window, and this desktop has no X server (on Wayland, install Xwayland)";

void report(const NSError& error) {
    g_warning("%s", error.localizedDescription().c_str());
}

PluginPresentation presentation(const LV2AudioUnit& unit) {
    return PluginPresentation::read(unit.world(), unit.data(), ExpectedRendering{}.sampleRate);
}

std::shared_ptr<LV2ViewController> makeController(const std::shared_ptr<LV2LocalAudioUnit>& unit,
                                                  const LV2PluginUIData& data) {
    auto library = std::make_shared<LV2PluginUILibrary>(data);
    return LV2ViewController::make(
        data,
        [unit, data, library = std::move(library)](const auto& connection, const auto& parent) {
            return std::make_unique<LV2EmbeddedPluginUI>(connection, unit, data, parent);
        },
        [unit] { return presentation(*unit); },
        // Making the UI occupies this thread, which other work may need first.
        G_PRIORITY_DEFAULT_IDLE);
}

std::shared_ptr<LV2ViewController> makeController(const std::shared_ptr<BridgedAudioUnit>& unit,
                                                  const LV2PluginUIData& data) {
    return LV2ViewController::make(
        data,
        [unit, isFixedSize = data.isFixedSize](const auto& connection, const auto& parent) {
            return std::make_unique<BridgedEmbeddedPluginUI>(connection, unit, isFixedSize, parent);
        },
        [unit] { return presentation(*unit); },
        // The service makes the UI while this process draws its window.
        G_PRIORITY_DEFAULT);
}

/// The PluginUIProvider of all units.
std::shared_ptr<UIViewController> provide(const std::shared_ptr<LV2AudioUnit>& unit) {
    try {
        const auto data = LV2PluginUIData::read(unit->world(), unit->data());
        if (!canEmbed()) {
            throw pluginUIError(LV2ErrorCode::noPluginUI, data.plugin, kNoX11);
        }
        if (const auto bridged = std::dynamic_pointer_cast<BridgedAudioUnit>(unit)) {
            return makeController(bridged, data);
        }
        return makeController(std::static_pointer_cast<LV2LocalAudioUnit>(unit), data);
    } catch (const NSError& error) {
        report(error);
        const bool isAbsent = error.code() == static_cast<std::int64_t>(LV2ErrorCode::noPluginUI) &&
                              !unit->data().hasX11UI;
        return GenericViewController::make(unit, isAbsent ? "" : error.localizedDescription());
    }
}

/// When the effect service has refused the UI and said why.
std::shared_ptr<UIViewController> provideSubstitute(const std::shared_ptr<LV2AudioUnit>& unit) {
    return GenericViewController::make(
        unit, unit->data().hasX11UI
                  ? "The effect’s own UI cannot be shown; the log says why. These are its controls."
                  : "");
}

}  // namespace

void LV2ViewController::enable() {
    LV2AudioUnit::setPluginUIProvider(provide, provideSubstitute);
}

std::shared_ptr<LV2ViewController> LV2ViewController::make(const LV2PluginUIData& data, Open open,
                                                           ReadControls readControls,
                                                           int openPriority) {
    auto result = std::make_shared<LV2ViewController>(data, std::move(open),
                                                      std::move(readControls), openPriority);
    result->setTitle(data.title);
    result->setView(result->container_);
    return result;
}

LV2ViewController::LV2ViewController(LV2PluginUIData data, Open openPluginUI,
                                     ReadControls readControls, int openPriority)
    : AUViewController(std::nullopt, nullptr),
      data_(std::move(data)),
      open_(std::move(openPluginUI)),
      container_(std::make_shared<X11ContainerView>(openPriority)),
      readControls_(std::move(readControls)) {
    container_->onToplevel = [this](const auto& place) {
        if (pluginUI_ == nullptr && !hasFailed_) {
            open(place);
        }
    };
    container_->onPlace = [this](const auto& place) { this->place(place); };
    container_->onHidden = [this] {
        hasFailed_ = false;
        watchControls(false);
        if (pluginUI_ != nullptr) {
            pluginUI_->setVisible(false);
        }
    };
    container_->onLeaving = [this] { close(); };
    container_->onRetry = [this] {
        hasFailed_ = false;
        // Opens the UI at its place, unless the view has left the screen.
        if (container_->place().toplevel != 0) {
            this->place(container_->place());
        }
    };
    container_->onTabInto = [this](bool isBackward) {
        return pluginUI_ != nullptr && pluginUI_->enterByKey(isBackward);
    };
    container_->onTakeFocus = [this](unsigned long time) {
        return pluginUI_ != nullptr && pluginUI_->keepFocus(time);
    };
}

LV2ViewController::~LV2ViewController() {
    watchControls(false);
    container_->setAccessible(nullptr);
    // The view may live longer.
    container_->onToplevel = nullptr;
    container_->onPlace = nullptr;
    container_->onHidden = nullptr;
    container_->onLeaving = nullptr;
    container_->onRetry = nullptr;
    container_->onTabInto = nullptr;
    container_->onTakeFocus = nullptr;
}

void LV2ViewController::place(const X11ContainerView::Place& place) {
    if (pluginUI_ != nullptr &&
        (place.toplevel != toplevel_ || place.scaleFactor != scaleFactor_)) {
        close();
    }
    if (pluginUI_ == nullptr && !hasFailed_) {
        open(place);
    }
    if (pluginUI_ != nullptr) {
        pluginUI_->place(place.area, place.visible);
        pluginUI_->setVisible(true);
        watchControls(true);
    }
}

void LV2ViewController::open(const X11ContainerView::Place& place) {
    toplevel_ = place.toplevel;
    scaleFactor_ = place.scaleFactor;
    try {
        const auto server = connection();
        if (server == nullptr) {
            throw pluginUIError(LV2ErrorCode::noPluginUI, data_.plugin,
                                "the X server accepts no further connection");
        }
        pluginUI_ = open_(server, {.toplevel = place.toplevel,
                                   .scaleFactor = static_cast<double>(place.scaleFactor),
                                   .size = place.area.size(),
                                   // GTK believes that its OpenGL context stays current.
                                   .willEnter = gdk_gl_context_clear_current});
    } catch (const NSError& error) {
        refused(error.localizedDescription());
        return;
    }
    pluginUI_->onChange = [this] { showCondition(); };
    pluginUI_->onUnusedKey = [this, view = std::weak_ptr(container_)](const X11Key& key) {
        const auto held = view.lock();
        if (held == nullptr) {
            return;
        }
        if (const auto isBackward = tabDirection(held->widget(), key)) {
            pluginUI_->restoreFocus();
            held->tabOut(*isBackward);
        } else {
            activateShortcut(held->widget(), key);
        }
    };
    pluginUI_->onClosed = [this](const std::string& reason) { closed(reason); };
    pluginUI_->onRefused = [this](const std::string& line) { refused(line); };
    showCondition();
}

void LV2ViewController::showCondition() {
    if (pluginUI_->isRestarting()) {
        container_->setMessage(data_.title + " has stopped. It is started again.");
        return;
    }
    container_->setMessage({});
    const auto least = pluginUI_->rules().minimumSize();
    const auto points = [this](int pixels) { return (pixels + scaleFactor_ - 1) / scaleFactor_; };
    container_->setMinimumSize(points(least.width), points(least.height));
}

void LV2ViewController::watchControls(bool isShown) {
    if (isShown == (controlsTimer_ != nullptr)) {
        return;
    }
    if (!isShown) {
        controlsTimer_ = nullptr;
        return;
    }
    controlsTimer_.reset(g_timeout_source_new(kControlsPeriod));
    // After what the user sees.
    g_source_set_priority(controlsTimer_.get(), G_PRIORITY_LOW);
    g_source_set_callback(
        controlsTimer_.get(),
        [](void* self) -> gboolean {
            static_cast<LV2ViewController*>(self)->refreshControls();
            return G_SOURCE_CONTINUE;
        },
        this, nullptr);
    g_source_attach(controlsTimer_.get(), nullptr);
}

void LV2ViewController::refreshControls() {
    if (pluginUI_ == nullptr) {
        return;
    }
    if (controls_ == nullptr) {
        controls_ = std::make_unique<AccessibleControls>(
            readControls_(), [this](std::uint32_t port, float value) {
                if (pluginUI_ != nullptr) {
                    pluginUI_->setControlValue(port, value);
                }
            });
        container_->setAccessible(controls_->widget());
    }
    controls_->refresh([this](std::uint32_t port) { return pluginUI_->controlValue(port); });
}

void LV2ViewController::close() {
    pluginUI_ = nullptr;
    hasFailed_ = false;
}

void LV2ViewController::closed(const std::string& reason) {
    g_message("The UI of <%s> is closed: %s.", data_.plugin.c_str(), reason.c_str());
    fail("The UI of " + data_.title + " is closed: " + reason + ".");
}

void LV2ViewController::refused(const std::string& line) {
    g_warning("%s", line.c_str());
    fail(line);
}

void LV2ViewController::fail(const std::string& message) {
    hasFailed_ = true;
    container_->setMinimumSize(-1, -1);
    container_->setMessage(message, true);
    pluginUI_ = nullptr;
}

}  // namespace orvalo
