#include "tests/app/ScreenFixture.h"

#include <gtk/gtk.h>

#include <algorithm>

#include "app/ApplicationClasses.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/ui/UIButton.h"
#include "support/Unwrapped.h"
#include "tests/testing/Desktop.h"

namespace orvalo::testing {

ScreenFixture::ScreenFixture() {
    // Only the application's effect, and no sound.
    g_setenv("ORVALO_AUDIO_OUTPUT", "null", TRUE);
    g_setenv("LV2_PATH", "/nowhere", TRUE);
    startDesktop();
    UIView::setClass(GTK_TYPE_BUTTON,
                     [](GtkWidget* widget) { return std::make_shared<UIButton>(widget); });
    registerApplicationClasses();
}

ScreenFixture::~ScreenFixture() {
    if (window) {
        gtk_window_destroy(GTK_WINDOW(window->widget()));
    }
}

std::shared_ptr<UIStoryboard> ScreenFixture::layout() {
    const auto url = Bundle::main()->url("Main", "ui");
    return UIStoryboard::load(unwrapped(url));
}

std::shared_ptr<ViewController> ScreenFixture::showMainScreen() {
    const CapturedOutput output;
    auto screen =
        std::dynamic_pointer_cast<ViewController>(layout()->instantiateInitialViewController());
    window = std::make_shared<UIWindow>(gtk_window_new());
    gtk_window_set_default_size(GTK_WINDOW(window->widget()), 960, 788);
    window->setRootViewController(screen);
    window->makeKeyAndVisible();
    EXPECT_TRUE(waitUntil([&output, &screen] {
        const auto lines = output.lines();
        return std::find(lines.begin(), lines.end(), "WARNING: Audio unit is nil (yet?).") !=
                   lines.end() &&
               gtk_widget_get_width(screen->view()->widget()) > 0;
    }));
    serveMainQueue();
    return screen;
}

void ScreenFixture::waitForKeyboard(bool isWindows) const {
    EXPECT_TRUE(waitUntil([this, isWindows] {
        return (gtk_window_is_active(GTK_WINDOW(window->widget())) != FALSE) == isWindows;
    }));
}

void ScreenFixture::serveMainQueue() {
    bool isServed = false;
    DispatchQueue::main()->async([&isServed] { isServed = true; });
    EXPECT_TRUE(waitUntil([&isServed] { return isServed; }));
}

}  // namespace orvalo::testing
