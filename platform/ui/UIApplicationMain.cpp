#include "platform/ui/UIApplicationMain.h"

#include <adwaita.h>

#include <clocale>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"
#include "platform/ui/UIApplication.h"
#include "platform/ui/UIApplicationDelegate.h"
#include "platform/ui/UIButton.h"
#include "platform/ui/UIClass.h"
#include "platform/ui/UIImageView.h"
#include "platform/ui/UIStoryboard.h"
#include "platform/ui/UIViewController.h"
#include "platform/ui/UIWindow.h"

namespace orvalo {

/// The course of the application's life.
struct UIApplicationStart {
    std::string delegateClassName;
    std::shared_ptr<UIResponder> responder;  // The delegate, as what it derives from.
    std::shared_ptr<UIWindow> window;
    bool isActive = false;

    UIApplicationDelegate& delegate() const { return *UIApplication::shared()->delegate_; }

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

    void launch(GApplication* application) {
        makeDelegate();
        const auto layout = loadLayout();
        window = layout->makeWindow();
        window->setRootViewController(layout->instantiateInitialViewController());
        auto* toolkitWindow = GTK_WINDOW(window->widget());
        gtk_window_set_application(toolkitWindow, GTK_APPLICATION(application));
        gtk_window_set_icon_name(toolkitWindow, g_application_get_application_id(application));
        g_signal_connect_swapped(toolkitWindow, "notify::is-active", G_CALLBACK(+[](void* start) {
                                     static_cast<UIApplicationStart*>(start)->takeActivity();
                                 }),
                                 this);
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

    /// The layout's own look and the application's icons.
    static void dress(const std::string& layout) {
        auto* display = gdk_display_get_default();
        gtk_icon_theme_add_search_path(gtk_icon_theme_get_for_display(display),
                                       Bundle::main()->iconsURL().path().c_str());
        if (const auto style = Bundle::main()->url(layout, "css")) {
            const std::unique_ptr<GtkCssProvider, Release<g_object_unref>> provider(
                gtk_css_provider_new());
            gtk_css_provider_load_from_path(provider.get(), style->path().c_str());
            gtk_style_context_add_provider_for_display(display, GTK_STYLE_PROVIDER(provider.get()),
                                                       GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
        }
    }

    void takeActivity() {
        const bool active = gtk_window_is_active(GTK_WINDOW(window->widget())) != FALSE;
        if (std::exchange(isActive, active) == active) {
            return;
        }
        const auto& application = UIApplication::shared();
        active ? delegate().applicationDidBecomeActive(application)
               : delegate().applicationWillResignActive(application);
    }

    static void activate(GApplication* application, void* data) {
        auto& start = *static_cast<UIApplicationStart*>(data);
        if (!start.window) {
            start.launch(application);
        }
        start.window->makeKeyAndVisible();
    }

    static void shutDown(GApplication* /*application*/, void* data) {
        if (static_cast<UIApplicationStart*>(data)->window) {
            UIApplication::shared()->delegate()->applicationWillTerminate(UIApplication::shared());
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
    if (gtk_init_check() == FALSE) {
        g_critical("There is no display to show a window on.");
        std::exit(EXIT_FAILURE);  // NOLINT(concurrency-mt-unsafe): as above.
    }
    adw_init();
    UIView::setClass(GTK_TYPE_BUTTON,
                     [](GtkWidget* widget) { return std::make_shared<UIButton>(widget); });
    UIImageView::registerClass();
    if (const auto name = Bundle::main()->infoValue("Name")) {
        g_set_application_name(name->c_str());
    }

    UIApplicationStart start{delegateClassName, nullptr, nullptr};
    const auto identifier = Bundle::main()->infoValue("Identifier");
    const std::unique_ptr<GtkApplication, Release<g_object_unref>> application(gtk_application_new(
        identifier ? identifier->c_str() : nullptr, G_APPLICATION_DEFAULT_FLAGS));
    g_signal_connect(application.get(), "activate", G_CALLBACK(UIApplicationStart::activate),
                     &start);
    g_signal_connect(application.get(), "shutdown", G_CALLBACK(UIApplicationStart::shutDown),
                     &start);
    return g_application_run(G_APPLICATION(application.get()), argc, argv);
}

}  // namespace orvalo
