#include <adwaita.h>
#include <gtkmm/application.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/icontheme.h>
#include <gtkmm/stylecontext.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

#include "platform/foundation/ExecutablePath.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/OneLine.h"
#include "platform/foundation/Print.h"
#include "platform/foundation/StandardErrorLog.h"
#include "programs/easing/EasingWindow.h"

namespace orvalo {

namespace {

constexpr int kBadOption = 2;
constexpr auto kSummary =
    "Shows the animation toolkit's easing curves, groups and impulse in a window.";
constexpr auto kStyle =
    ".bar { padding: 12px 18px; border-top: 1px solid alpha(currentColor, 0.15); }"
    ".stillness { padding: 9px 18px; background-color: alpha(currentColor, 0.07); }"
    ".tile { padding: 0; }"
    ".odd { margin: 0 21px 10px 0; font-size: 0.7em; font-weight: bold; }";

/// Reads the command line. Returns the exit status, or nothing to continue.
std::optional<int> readOptions(int argc, char** argv) {
    gboolean version = FALSE;
    // NOLINTNEXTLINE(modernize-avoid-c-arrays): what GLib takes, ended by an empty entry.
    const GOptionEntry entries[] = {
        {"version", 'v', 0, G_OPTION_ARG_NONE, &version, "Show the version", nullptr},
        {nullptr, '\0', 0, G_OPTION_ARG_NONE, nullptr, nullptr, nullptr}};
    const std::unique_ptr<GOptionContext, Release<g_option_context_free>> context(
        g_option_context_new(nullptr));
    g_option_context_set_summary(context.get(), kSummary);
    g_option_context_add_main_entries(context.get(), entries, nullptr);
    GError* failure = nullptr;
    if (g_option_context_parse(context.get(), &argc, &argv, &failure) == FALSE) {
        std::fprintf(stderr, "orvalo-easing: %s\n",
                     onOneLine(GErrorPointer(failure)->message).c_str());
        return kBadOption;
    }
    if (argc > 1) {
        std::fprintf(stderr, "orvalo-easing: '%s' is no option.\n", onOneLine(argv[1]).c_str());
        return kBadOption;
    }
    if (version != FALSE) {
        print("orvalo-easing " ORVALO_VERSION);
        return EXIT_SUCCESS;
    }
    return std::nullopt;
}

void loadStyle() {
    const auto display = Gdk::Display::get_default();
    Gtk::IconTheme::get_for_display(display)->add_search_path(
        (executablePath().parent_path().parent_path() / "share/icons").string());
    const auto provider = Gtk::CssProvider::create();
    provider->load_from_data(kStyle);
    Gtk::StyleContext::add_provider_for_display(display, provider,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace

}  // namespace orvalo

int main(int argc, char** argv) {
    using namespace orvalo;
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread runs yet.
    gtk_disable_setlocale();
    std::setlocale(LC_ALL, "");
    // NOLINTEND(concurrency-mt-unsafe)
    logToStandardError();
    if (const auto status = readOptions(argc, argv)) {
        return *status;
    }
    // Only small parts of the window change. Without a graphics processor, redrawing them with
    // cairo costs less than redrawing the whole window with OpenGL.
    g_setenv("GSK_RENDERER", "cairo", FALSE);
    if (gtk_init_check() == FALSE) {
        g_critical("There is no display to show a window on.");
        return EXIT_FAILURE;
    }
    adw_init();
    g_set_application_name("Orvalo Easing");
    const auto application =
        Gtk::Application::create("com.tessaly.Orvalo.Easing", Gio::Application::Flags::NON_UNIQUE);
    std::unique_ptr<EasingWindow> window;
    application->signal_activate().connect([&] {
        loadStyle();
        window = std::make_unique<EasingWindow>();
        window->set_icon_name("com.tessaly.Orvalo");
        application->add_window(*window);
        window->present();
    });
    return application->run();
}
