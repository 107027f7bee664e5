#include "tests/platform/ui/LayoutFixture.h"

#include <gtk/gtk.h>

#include <fstream>

namespace orvalo::testing {

const std::string LayoutFixture::twoScreens = R"(
<object class="UIView" id="FirstScreen">
  <child>
    <object class="GtkBox" id="_row">
      <child><object class="UIView" id="box"/></child>
      <child><object class="GtkButton" id="button"/></child>
    </object>
  </child>
</object>
<object class="UIView" id="SecondScreen"/>
<object class="UIStoryboardSegue">
  <property name="identifier">ShowSecond</property>
  <property name="source">FirstScreen</property>
  <property name="destination">SecondScreen</property>
  <property name="presentation">fullScreen</property>
  <property name="trigger">button</property>
</object>
<object class="UIStoryboardSegue">
  <property name="identifier">ShowAgain</property>
  <property name="source">FirstScreen</property>
  <property name="destination">SecondScreen</property>
  <property name="presentation">fullScreen</property>
</object>
)";

LayoutFixture::LayoutFixture() {
    startDesktop();
    registerTestScreens();
    events().clear();
    auto* widget = gtk_window_new();
    gtk_window_set_default_size(GTK_WINDOW(widget), 640, 480);
    window = std::make_shared<UIWindow>(widget);
}

LayoutFixture::~LayoutFixture() {
    gtk_window_destroy(GTK_WINDOW(window->widget()));
}

std::string LayoutFixture::write(const std::string& objects) const {
    auto path = (folder.path() / "Test.ui").string();
    std::ofstream(path) << "<interface>" << objects << "</interface>\n";
    return path;
}

std::shared_ptr<UIStoryboard> LayoutFixture::layout(const std::string& objects) const {
    return UIStoryboard::load(URL::fileURLWithPath(write(objects)));
}

void LayoutFixture::show(const std::shared_ptr<UIViewController>& controller) {
    window->setRootViewController(controller);
    window->makeKeyAndVisible();
    EXPECT_TRUE(waitUntil(
        [&controller] { return gtk_widget_get_width(controller->view()->widget()) > 0; }));
}

void LayoutFixture::click(const UIView& button) {
    g_signal_emit_by_name(button.widget(), "clicked");
}

}  // namespace orvalo::testing
