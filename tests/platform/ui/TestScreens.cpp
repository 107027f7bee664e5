#include "tests/platform/ui/TestScreens.h"

#include <gtk/gtk.h>

#include "platform/ui/UIClass.h"

namespace orvalo::testing {

std::vector<std::string>& events() {
    static std::vector<std::string> noted;
    return noted;
}

void FirstScreen::press(const std::shared_ptr<NSObject>& sender) {
    note("press");
    senders.push_back(sender);
}

void FirstScreen::pressButton(const std::shared_ptr<UIButton>& sender) {
    note("pressButton");
    senders.push_back(sender);
}

void FirstScreen::prepare(const std::shared_ptr<UIStoryboardSegue>& for_,
                          const std::shared_ptr<NSObject>& sender) {
    note("prepare " + for_->identifier.value_or("nil"));
    segues.push_back(for_);
    senders.push_back(sender);
}

void registerTestScreens() {
    UIView::setClass(GTK_TYPE_BUTTON,
                     [](GtkWidget* widget) { return std::make_shared<UIButton>(widget); });
    UIClass::registerClass(UIClass::of<FirstScreen>("FirstScreen")
                               .outlet("box", &FirstScreen::box)
                               .outlet("button", &FirstScreen::button)
                               .action("press", &FirstScreen::press)
                               .action("pressButton", &FirstScreen::pressButton));
    UIClass::registerClass(UIClass::of<SecondScreen>("SecondScreen"));
}

}  // namespace orvalo::testing
