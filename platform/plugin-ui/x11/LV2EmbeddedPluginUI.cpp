#include "platform/plugin-ui/x11/LV2EmbeddedPluginUI.h"

#include <utility>

namespace orvalo {

namespace {

// Below GTK's drawing, which has 120, so that a UI cannot delay it.
constexpr int kUpdatePriority = 125;
// Two seconds at least.
constexpr int kMaximumUpdatesWithoutWindow = 120;

}  // namespace

LV2EmbeddedPluginUI::LV2EmbeddedPluginUI(std::shared_ptr<X11Connection> connection,
                                         std::shared_ptr<LV2LocalAudioUnit> unit,
                                         LV2PluginUIData data, Parent parent)
    : EmbeddedPluginUI(std::move(connection), std::move(parent), data.isFixedSize),
      unit_(std::move(unit)),
      data_(std::move(data)) {
    open();
    timer_ = std::make_unique<PluginUITimer>(kUpdatePriority, [this] { update(); });
}

LV2EmbeddedPluginUI::~LV2EmbeddedPluginUI() {
    end();
}

void LV2EmbeddedPluginUI::open() {
    makeContainer();
    enter();
    pluginUI_ =
        std::make_shared<LV2PluginUI>(unit_, data_, container()->window(), parent().scaleFactor,
                                      [container = std::weak_ptr(container())](X11Size size) {
                                          if (const auto held = container.lock()) {
                                              held->requestSize(size);
                                          }
                                      });
    updatesWithoutWindow_ = 0;
    container()->adopt(pluginUI_->window());
}

void LV2EmbeddedPluginUI::reopen() {
    container()->release();
    pluginUI_ = nullptr;
    try {
        open();
        reportChange();
    } catch (const NSError& error) {
        end();
        reportRefused(error.localizedDescription());
    }
}

void LV2EmbeddedPluginUI::resized(X11Size size) {
    if (pluginUI_ != nullptr) {
        enter();
        pluginUI_->setSize(size);
    }
}

void LV2EmbeddedPluginUI::visibilityChanged() {
    if (timer_ != nullptr) {
        timer_->setVisible(isVisible());
    }
}

void LV2EmbeddedPluginUI::enter() const {
    if (parent().willEnter) {
        parent().willEnter();
    }
}

void LV2EmbeddedPluginUI::update() {
    enter();
    if (pluginUI_->isOutdated()) {
        reopen();
        return;
    }
    // The UI's code may run the main loop, in which this object may close or be destroyed. The UI
    // and its container have to outlive that code.
    const auto willEnter = parent().willEnter;
    const auto heldContainer = container();
    auto ui = pluginUI_;
    const bool isOpen = ui->update();
    if (ui.use_count() == 1) {
        if (willEnter) {
            willEnter();
        }
        ui = nullptr;
        return;
    }
    if (!isOpen) {
        close("it has closed itself");
    } else if (isVisible() && !container()->hasChild() &&
               ++updatesWithoutWindow_ == kMaximumUpdatesWithoutWindow) {
        close("it makes no window");
    }
}

void LV2EmbeddedPluginUI::end() {
    timer_ = nullptr;
    enter();
    container()->release();
    pluginUI_ = nullptr;
}

void LV2EmbeddedPluginUI::close(const std::string& reason) {
    end();
    reportClosed(reason);
}

}  // namespace orvalo
