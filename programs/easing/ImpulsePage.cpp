#include "programs/easing/ImpulsePage.h"

#include <gtkmm/flowbox.h>

#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "programs/easing/Accessible.h"
#include "programs/easing/Field.h"
#include "programs/easing/ImpulseGraph.h"

namespace orvalo {

/// Reads the impulse's value, which has no public accessor.
struct ImpulsePeer {
    static float value(const Impulse& impulse) { return impulse._value; }
};

namespace {

std::string counted(int count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace

ImpulsePage::ImpulsePage() : graph_(Gtk::make_managed<ImpulseGraph>()) {
    auto& explanation = *Gtk::make_managed<Gtk::Label>(
        "A push moves the value by a step that is damped at every tick. Where the value reaches a "
        "bound, the step changes its direction.");
    explanation.set_wrap();
    explanation.set_xalign(0);
    append(explanation);

    auto& push = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 18);
    push.append(makeField("_Amount", amount_, {-100, 100, 1, 1, 12}));
    // At 1 the push would never end.
    push.append(makeField("In_tensity", intensity_, {0, 0.99, 0.01, 2, 0.97}));
    append(push);
    auto& bounds = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 18);
    hasBounds_.set_active();
    nameByLabel(hasBounds_);
    bounds.append(hasBounds_);
    bounds.append(makeField("_Lower", lower_, {-1000, 1000, 5, 0, -100}));
    bounds.append(makeField("_Upper", upper_, {-1000, 1000, 5, 0, 100}));
    append(bounds);
    hasBounds_.signal_toggled().connect([this] { enableBounds(); });

    append(*graph_);
    event_.set_text("Ready.");
    event_.set_xalign(0);
    event_.add_css_class("dim-label");
    append(event_);
    graph_->begin(std::pair(-100.0, 100.0), 0);

    impulse_->onAnimation = [this](const auto& impulse) {
        ++ticks_;
        graph_->append(static_cast<double>(ImpulsePeer::value(*impulse)));
    };
    impulse_->onCollision = [this](const auto& /*impulse*/) {
        ++collisions_;
        graph_->markCollision();
    };
    impulse_->onFinished = [this](const auto& /*impulse*/) {
        showResult();
        setPlaying(false);
    };
}

ImpulsePage::~ImpulsePage() {
    impulse_->onAnimation = nullptr;
    impulse_->onCollision = nullptr;
    impulse_->onFinished = nullptr;
    impulse_->stop();
}

void ImpulsePage::enableBounds() {
    const bool has = hasBounds_.get_active();
    lower_.get_parent()->set_sensitive(has);
    upper_.get_parent()->set_sensitive(has);
}

void ImpulsePage::setup(const Pace& pace) {
    impulse_->stop();
    for (auto* field : {&amount_, &intensity_, &lower_, &upper_}) {
        field->update();
    }
    const double amount = amount_.get_value();
    const double intensity = intensity_.get_value();
    const auto bounds = std::pair(lower_.get_value(), upper_.get_value());
    impulse_->setup(1, static_cast<float>(amount), static_cast<float>(pace.interval),
                    static_cast<float>(intensity));
    impulse_->setMinMax(hasBounds_.get_active(), static_cast<float>(bounds.first),
                        static_cast<float>(bounds.second));
    ticks_ = 0;
    collisions_ = 0;
    event_.set_text("Running.");
    graph_->begin(hasBounds_.get_active() ? std::optional(bounds) : std::nullopt,
                  std::abs(amount) * intensity / (1 - intensity));
}

void ImpulsePage::play(const Pace& pace) {
    setup(pace);
    impulse_->start();
    setPlaying(true);
}

void ImpulsePage::stop() {
    if (!impulse_->isFinished()) {
        showResult();
    }
    impulse_->stop();
    setPlaying(false);
}

void ImpulsePage::showEnd(const Pace& pace) {
    setup(pace);
    while (!impulse_->isFinished()) {
        impulse_->animate();
    }
    redraw();
}

void ImpulsePage::showResult() {
    event_.set_text("Ended after " + counted(ticks_, "tick") + " with " +
                    counted(collisions_, "collision") + ".");
}

void ImpulsePage::redraw() {
    graph_->queue_draw();
}

}  // namespace orvalo
