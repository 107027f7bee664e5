#include "programs/easing/EasingWindow.h"

#include <gtkmm/headerbar.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/shortcutcontroller.h>
#include <gtkmm/stackswitcher.h>

#include <utility>

#include "animation/Ticking.h"
#include "programs/easing/Accessible.h"
#include "programs/easing/CurvesPage.h"
#include "programs/easing/Field.h"
#include "programs/easing/GroupsPage.h"
#include "programs/easing/ImpulsePage.h"

namespace orvalo {

namespace {

constexpr float kRest = 0.8F;          // Seconds between two runs.
constexpr int kLeastPageHeight = 490;  // In pixels; a page scrolls in a lower window.

}  // namespace

EasingWindow::EasingWindow() {
    set_title("Orvalo Easing");
    set_default_size(960, 680);

    auto& header = *Gtk::make_managed<Gtk::HeaderBar>();
    auto& switcher = *Gtk::make_managed<Gtk::StackSwitcher>();
    switcher.set_stack(stack_);
    setAccessibleName(switcher, "Pages");
    header.set_title_widget(switcher);
    set_titlebar(header);

    auto& curves = *Gtk::make_managed<CurvesPage>();
    addPage(curves, "Curves");
    addPage(*Gtk::make_managed<GroupsPage>([&curves] { return curves.chosen(); }), "Groups");
    addPage(*Gtk::make_managed<ImpulsePage>(), "Impulse");

    auto& content = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    reducedMotionNote_.set_text(
        "The desktop asks for less motion: only the end of each movement is shown.");
    reducedMotionNote_.add_css_class("stillness");
    content.append(reducedMotionNote_);
    content.append(stack_);
    content.append(makeBar());
    set_child(content);

    addShortcut("F5", [this] { playOrStop(); });
    addShortcut("<Control>q|<Control>w", [this] { close(); });
    for (std::size_t index = 0; index < pages_.size(); ++index) {
        const auto keys = "<Alt>" + std::to_string(index + 1);
        addShortcut(keys.c_str(), [this, index] {
            stack_.set_visible_child(*pages_[index]->get_ancestor(GTK_TYPE_SCROLLED_WINDOW));
        });
    }
    stack_.property_visible_child().signal_changed().connect([this] { pageChanged(); });
    motion_.signalChanged().connect([this] { motionChanged(); });
    pageChanged();
    motionChanged();
    button_.grab_focus();
    signal_map().connect([this] { play(); });
}

EasingWindow::~EasingWindow() {
    cancelRest();
    for (auto* page : pages_) {
        page->signalPlaying().clear();
        page->stop();
    }
}

void EasingWindow::addPage(DemoPage& page, const Glib::ustring& name) {
    auto& scrolled = *Gtk::make_managed<Gtk::ScrolledWindow>();
    scrolled.set_child(page);
    scrolled.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scrolled.set_min_content_height(kLeastPageHeight);
    scrolled.set_expand();
    stack_.add(scrolled, name, name);
    page.signalPlaying().connect([this, &page] {
        if (&page == page_ && !isOwnCommand_) {
            playingChanged();
        }
    });
    pages_.push_back(&page);
}

Gtk::Widget& EasingWindow::makeBar() {
    auto& bar = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 18);
    bar.add_css_class("bar");
    auto& durationField = makeField("_Duration", duration_, {0.1, 10, 0.1, 1, 1.5}, "s");
    durationField_ = &durationField;
    bar.append(durationField);
    bar.append(makeField("_Interval", interval_, {1, 100, 1, 0, 5}, "ms"));
    bar.append(repeat_);
    nameByLabel(repeat_);
    button_.set_use_underline();
    button_.set_hexpand();
    button_.set_halign(Gtk::Align::END);
    button_.set_size_request(96, -1);
    button_.add_css_class("suggested-action");
    button_.signal_clicked().connect([this] { playOrStop(); });
    bar.append(button_);
    for (auto* field : {&duration_, &interval_}) {
        field->signal_value_changed().connect([this] {
            if (page().isPlaying()) {
                play();
            }
        });
    }
    repeat_.signal_toggled().connect([this] {
        cancelRest();
        updateButton();
    });
    return bar;
}

void EasingWindow::addShortcut(const char* keys, std::function<void()> action) {
    auto* controller = gtk_shortcut_controller_new();
    gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_CAPTURE);
    auto* held = new std::function<void()>(std::move(action));
    gtk_shortcut_controller_add_shortcut(
        GTK_SHORTCUT_CONTROLLER(controller),
        gtk_shortcut_new(
            gtk_shortcut_trigger_parse_string(keys),
            gtk_callback_action_new(
                [](GtkWidget* /*widget*/, GVariant* /*arguments*/, gpointer data) -> gboolean {
                    (*static_cast<std::function<void()>*>(data))();
                    return TRUE;
                },
                held,
                [](gpointer data) {
                    const std::unique_ptr<std::function<void()>> owned(
                        static_cast<std::function<void()>*>(data));
                })));
    gtk_widget_add_controller(GTK_WIDGET(gobj()), controller);
}

Pace EasingWindow::pace() const {
    constexpr double millisecondsInSecond = 1000;
    return {duration_.get_value(), interval_.get_value() / millisecondsInSecond};
}

void EasingWindow::play() {
    cancelRest();
    // Takes over a number that is still being typed.
    for (auto* field : {&duration_, &interval_}) {
        field->update();
    }
    isOwnCommand_ = true;
    if (motion_.isReduced()) {
        page().showEnd(pace());
    } else {
        page().play(pace());
    }
    isOwnCommand_ = false;
    updateButton();
}

void EasingWindow::playOrStop() {
    if (rest_ || page().isPlaying()) {
        cancelRest();
        isOwnCommand_ = true;
        page().stop();
        isOwnCommand_ = false;
        updateButton();
    } else {
        play();
    }
}

void EasingWindow::pageChanged() {
    cancelRest();
    auto* const shown = stack_.get_visible_child();
    for (auto* page : pages_) {
        if (page->is_ancestor(*shown)) {
            auto* const left = std::exchange(page_, page);
            if (left != nullptr) {
                left->stop();
            }
        }
    }
    durationField_->set_visible(page().hasDuration());
    updateButton();
}

void EasingWindow::playingChanged() {
    if (!page().isPlaying() && repeat_.get_active() && !motion_.isReduced()) {
        cancelRest();
        rest_ = startTicking(kRest, [this] { play(); });
    }
    updateButton();
}

void EasingWindow::motionChanged() {
    const bool isReduced = motion_.isReduced();
    reducedMotionNote_.set_visible(isReduced);
    repeat_.set_sensitive(!isReduced);
    if (isReduced && (rest_ || page().isPlaying())) {
        play();
    }
}

void EasingWindow::updateButton() {
    button_.set_label(rest_ || page().isPlaying() ? "_Stop" : page().action());
    nameByLabel(button_);
}

void EasingWindow::cancelRest() {
    stopTicking(rest_);
}

}  // namespace orvalo
