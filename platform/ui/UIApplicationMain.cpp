#include "platform/ui/UIApplicationMain.h"

#include <glib-unix.h>
#include <gtk/gtk.h>

#include <clocale>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/StandardErrorLog.h"
#include "platform/ui/ToolkitStart.h"
#include "platform/ui/UIApplication.h"
#include "platform/ui/UIApplicationDelegate.h"
#include "platform/ui/UIButton.h"
#include "platform/ui/UIClass.h"
#include "platform/ui/UIImageView.h"
#include "platform/ui/UIStoryboard.h"
#include "platform/ui/UIViewController.h"
#include "platform/ui/UIWindow.h"
#include "platform/ui/WindowSize.h"

namespace orvalo {

namespace {

/// -1 to continue; the exit status when there are arguments, which the application does not accept.
int refuseArguments(GApplication* /*application*/, GVariantDict* options, void* /*data*/) {
    const char** given = nullptr;
    if (g_variant_dict_lookup(options, G_OPTION_REMAINING, "^a&ay", &given) == FALSE) {
        return -1;
    }
    const std::unique_ptr<const char*, Release<g_free>> held(given);
    g_critical("\"%s\" is not opened: the application takes no files.", *given);
    return EXIT_FAILURE;
}

// In milliseconds; the first frame is on screen by then.
constexpr unsigned kIconDelay = 500;

}  // namespace

/// The application's state from its start to its end.
struct UIApplicationStart {
    std::string delegateClassName;
    GObjectPointer<GtkApplication> application;
    std::shared_ptr<UIResponder> responder;  // The delegate; keeps it alive.
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
        auto* toolkitWindow = GTK_WINDOW(window->widget());
        gtk_application_add_window(application.get(), toolkitWindow);
        keepWindowSize(toolkitWindow);
        // The icon's many sizes take time to draw; the first frame must not wait for them.
        g_timeout_add_once(
            kIconDelay,
            [](void* shown) {
                gtk_window_set_icon_name(GTK_WINDOW(shown), g_application_get_application_id(
                                                                g_application_get_default()));
            },
            toolkitWindow);
        g_signal_connect_swapped(
            toolkitWindow, "notify::is-active", G_CALLBACK(+[](UIApplicationStart* start) {
                start->setActive(gtk_window_is_active(GTK_WINDOW(start->window->widget())));
            }),
            this);
        delegate().setWindow(window);
        delegate().application(UIApplication::shared(), {});
    }

    static std::shared_ptr<UIStoryboard> loadLayout() {
        const auto name = Bundle::main()->infoValue("MainInterface").value_or("Main");
        loadStyle(name);
        return UIStoryboard::required(*Bundle::main(), name);
    }

    /// Loads the layout's style sheet, if there is one.
    static void loadStyle(const std::string& layout) {
        if (const auto style = Bundle::main()->url(layout, "css")) {
            const GObjectPointer<GtkCssProvider> provider(gtk_css_provider_new());
            gtk_css_provider_load_from_path(provider.get(), style->path().c_str());
            gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                                       GTK_STYLE_PROVIDER(provider.get()),
                                                       GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
        }
    }

    void setActive(bool active) {
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
            for (const auto& ending : UIApplication::shared()->endings_) {
                ending();
            }
        }
    }

    /// Ends the process by the signal, as it would have without a handler, after shutDown().
    template <int number>
    void endOnSignal() {
        g_unix_signal_add(
            number,
            [](void* start) -> gboolean {
                static_cast<UIApplicationStart*>(start)->shutDown();
                std::signal(number, SIG_DFL);
                std::raise(number);
                return G_SOURCE_REMOVE;
            },
            this);
    }
};

int UIApplicationMain(int argc, char** argv, const std::optional<std::string>& principalClassName,
                      const std::string& delegateClassName) {
    if (principalClassName) {
        fatalError("There is no application class \"" + *principalClassName + "\".");
    }
    // Plug-in UIs are X11 windows, which only an X11 window can embed.
    gdk_set_allowed_backends("x11,*");
    // Numbers in standard output lines do not depend on the locale.
    gtk_disable_setlocale();
    std::setlocale(LC_ALL, "");       // NOLINT(concurrency-mt-unsafe): there is only one thread.
    std::setlocale(LC_NUMERIC, "C");  // NOLINT(concurrency-mt-unsafe): as above.
    logToStandardError();
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
    const auto identifier = Bundle::main()->infoValue("Identifier");
    start.application.reset(gtk_application_new(identifier ? identifier->c_str() : nullptr,
                                                G_APPLICATION_DEFAULT_FLAGS));
    auto* application = G_APPLICATION(start.application.get());
    // The application has no GResources; looking for icons there would reload the icon theme.
    g_application_set_resource_base_path(application, nullptr);
    g_application_add_main_option(application, G_OPTION_REMAINING, 0, G_OPTION_FLAG_NONE,
                                  G_OPTION_ARG_FILENAME_ARRAY, "", nullptr);
    g_signal_connect(application, "handle-local-options", G_CALLBACK(refuseArguments), nullptr);
    g_signal_connect_swapped(application, "activate",
                             G_CALLBACK(+[](UIApplicationStart* self) { self->activate(); }),
                             &start);
    g_signal_connect_swapped(application, "shutdown",
                             G_CALLBACK(+[](UIApplicationStart* self) { self->shutDown(); }),
                             &start);
    start.endOnSignal<SIGTERM>();
    start.endOnSignal<SIGINT>();
    start.endOnSignal<SIGHUP>();
    if (const int status = g_application_run(application, argc, argv); status != 0) {
        std::exit(status);  // NOLINT(concurrency-mt-unsafe): no window was opened.
    }
    return 0;
}

}  // namespace orvalo
