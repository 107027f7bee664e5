#include "tests/platform/plugin-ui/view/StageWindow.h"

#include <optional>

#include "platform/plugin-ui/view/LV2ViewController.h"
#include "platform/ui/NSLayoutConstraint.h"
#include "tests/platform/plugin-ui/view/WidgetPlace.h"
#include "tests/platform/plugin-ui/view/WindowManager.h"
#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

void startToolkit() {
    static const bool isStarted = [] {
        screen();
        startWindowManager();
        gtk_init();
        LV2ViewController::enable();
        return true;
    }();
    static_cast<void>(isStarted);
}

std::shared_ptr<UIViewController> requestPluginUI(AUAudioUnit& unit) {
    std::optional<std::shared_ptr<UIViewController>> delivered;
    unit.requestViewController([&delivered](const auto& controller) { delivered = controller; });
    pollUntil([&delivered] { return delivered.has_value(); });
    return delivered.value_or(nullptr);
}

StageWindow::StageWindow()
    : window_(gtk_window_new()),
      button_(gtk_button_new_with_label("Play")),
      stage_(std::make_shared<UIView>()) {
    gtk_window_set_default_size(GTK_WINDOW(window_), 700, 500);
    auto* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(box), button_);
    gtk_widget_set_vexpand(stage_->widget(), TRUE);
    gtk_box_append(GTK_BOX(box), stage_->widget());
    gtk_window_set_child(GTK_WINDOW(window_), box);
    g_signal_connect_swapped(button_, "clicked", G_CALLBACK(+[](int* count) { ++*count; }),
                             &presses_);
    g_object_add_weak_pointer(G_OBJECT(window_), reinterpret_cast<void**>(&window_));
}

StageWindow::~StageWindow() {
    close();
}

void StageWindow::embed(UIViewController& controller) const {
    const auto view = controller.view();
    view->setFrame(stage_->bounds());
    stage_->addSubview(view);
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    NSLayoutConstraint::activate({view->topAnchor().constraint(stage_->topAnchor()),
                                  view->leadingAnchor().constraint(stage_->leadingAnchor()),
                                  view->bottomAnchor().constraint(stage_->bottomAnchor()),
                                  view->trailingAnchor().constraint(stage_->trailingAnchor())});
}

void StageWindow::close() {
    if (window_ != nullptr) {
        gtk_window_destroy(GTK_WINDOW(window_));
    }
}

X11Rect StageWindow::place() const {
    return placeOf(stage_->widget());
}

}  // namespace orvalo::testing
