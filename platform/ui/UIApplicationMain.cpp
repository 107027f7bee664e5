#include "platform/ui/UIApplicationMain.h"

#include <glibmm/main.h>
#include <gtkmm/application.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/stylecontext.h>
#include <gtkmm/window.h>

#include <clocale>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"
#include "platform/ui/ToolkitStart.h"
#include "platform/ui/UIApplication.h"
#include "platform/ui/UIApplicationDelegate.h"
#include "platform/ui/UIButton.h"
#include "platform/ui/UIClass.h"
#include "platform/ui/UIImageView.h"
#include "platform/ui/UIStoryboard.h"
#include "platform/ui/UIViewController.h"
#include "platform/ui/UIWindow.h"

namespace orvalo {

// Milliseconds; the first frame is out by then.
constexpr unsigned kIconDelay = 500;

/// The course of the application's life.
struct UIApplicationStart {
    std::string delegateClassName;
    Glib::RefPtr<Gtk::Application> application;
    std::shared_ptr<UIResponder> responder;  // The delegate, as what it derives from.
    std::shared_ptr<UIWindow> window;
    bool isActive = false;

    static UIApplicationDelegate& delegate() { return *UIApplication::shared()->delegate_; }

    void makeDelegate() {
        const auto* known = UIClass::named(delegateClassName);
        responder = known == nullptr ? nullptr : known->make(nullptr);
        auto made = std::dynamic_pointer_cast<UIApplicationDelegate>(responder);
        if (!made) {
            fatalError("There is no application delegate of the class \"" + delegateClassName +
                       "\".");
        }
        UIApplication::shared()->delegate_ = std::move(made);
    }

    void launch() {
        makeDelegate();
        const auto layout = loadLayout();
        window = layout->makeWindow();
        window->setRootViewController(layout->instantiateInitialViewController());
        auto& toolkitWindow = *Glib::wrap(GTK_WINDOW(window->widget()));
        application->add_window(toolkitWindow);
        // Its sizes are drawn one by one, which need not keep the first frame waiting.
        Glib::signal_timeout().connect_once(
            [this] {
                gtk_window_set_icon_name(GTK_WINDOW(window->widget()),
                                         application->get_id().c_str());
            },
            kIconDelay);
        toolkitWindow.property_is_active().signal_changed().connect(
            [this, &toolkitWindow] { takeActivity(toolkitWindow.is_active()); });
        delegate().setWindow(window);
        delegate().didFinishLaunchingWithOptions(UIApplication::shared(), {});
    }

    static std::shared_ptr<UIStoryboard> loadLayout() {
        const auto name = Bundle::main()->infoValue("MainInterface").value_or("Main");
        dress(name);
        const auto url = Bundle::main()->url(name, "ui");
        if (!url) {
            fatalError("The bundle has no layout \"" + name + ".ui\".");
        }
        try {
            return UIStoryboard::load(*url);
        } catch (const NSError& error) {
            fatalError(error.localizedDescription());
        }
    }

    /// The layout's own look.
    static void dress(const std::string& layout) {
        if (const auto style = Bundle::main()->url(layout, "css")) {
            const auto provider = Gtk::CssProvider::create();
            provider->load_from_path(style->path());
            Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), provider,
                                                        GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
        }
    }

    void takeActivity(bool active) {
        if (std::exchange(isActive, active) == active) {
            return;
        }
        const auto& running = UIApplication::shared();
        active ? delegate().applicationDidBecomeActive(running)
               : delegate().applicationWillResignActive(running);
    }

    void activate() {
        if (!window) {
            launch();
        }
        window->makeKeyAndVisible();
    }

    void shutDown() const {
        if (window) {
            delegate().applicationWillTerminate(UIApplication::shared());
        }
    }
};

int UIApplicationMain(int argc, char** argv, const std::optional<std::string>& principalClassName,
                      const std::string& delegateClassName) {
    if (principalClassName) {
        fatalError("There is no application class \"" + *principalClassName + "\".");
    }
    // Effects bring X11 interfaces, which only a window of X11 takes in.
    gdk_set_allowed_backends("x11,*");
    // Numbers in lines read the same everywhere.
    gtk_disable_setlocale();
    std::setlocale(LC_ALL, "");       // NOLINT(concurrency-mt-unsafe): there is one thread yet.
    std::setlocale(LC_NUMERIC, "C");  // NOLINT(concurrency-mt-unsafe): as above.
    g_log_writer_default_set_use_stderr(TRUE);
    if (!startToolkit(Bundle::main()->dataURL().path())) {
        g_critical("There is no display to show a window on.");
        std::exit(EXIT_FAILURE);  // NOLINT(concurrency-mt-unsafe): as above.
    }
    UIView::setClass(GTK_TYPE_BUTTON,
                     [](GtkWidget* widget) { return std::make_shared<UIButton>(widget); });
    UIImageView::registerClass();
    if (const auto name = Bundle::main()->infoValue("Name")) {
        g_set_application_name(name->c_str());
    }

    UIApplicationStart start;
    start.delegateClassName = delegateClassName;
    start.application =
        Gtk::Application::create(Bundle::main()->infoValue("Identifier").value_or(""));
    // There are none, and to look for icons among them the icon theme would be read anew.
    start.application->unset_resource_base_path();
    start.application->signal_activate().connect([&start] { start.activate(); });
    start.application->signal_shutdown().connect([&start] { start.shutDown(); });
    return start.application->run(argc, argv);
}

}  // namespace orvalo
