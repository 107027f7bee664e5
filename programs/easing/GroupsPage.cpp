#include "programs/easing/GroupsPage.h"

#include <algorithm>
#include <utility>

#include "animation/EasingCurve.h"
#include "programs/easing/Accessible.h"
#include "programs/easing/CurvePlot.h"
#include "programs/easing/Lanes.h"

namespace orvalo {

namespace {

constexpr int kLanes = 5;
constexpr auto kNotFound = "?";
constexpr auto kReady = "Ready.";

std::vector<std::shared_ptr<Animator>> makeAnimators() {
    std::vector<std::shared_ptr<Animator>> result(kLanes);
    std::generate(result.begin(), result.end(), [] { return std::make_shared<Animator>(); });
    return result;
}

std::string frames(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " frame" : " frames");
}

/// A share of the pace's frames, at least one.
std::int64_t part(const Pace& pace, double share) {
    return std::max<std::int64_t>(1, std::llround(static_cast<double>(pace.frames()) * share));
}

}  // namespace

GroupsPage::GroupsPage(std::function<EnumEasing()> curve)
    : curve_(std::move(curve)),
      animators_(makeAnimators()),
      lanes_(Gtk::make_managed<Lanes>(animators_)) {
    auto& none = *Gtk::make_managed<Gtk::Box>();
    kinds_ = {
        {"S_tack",
         "A stack runs its animators side by side on one timer. It drops each one as it ends "
         "and finishes when none is left.",
         &none, &GroupsPage::prepareStack, &GroupsPage::startStack},
        {"_Chain",
         "A chain runs its animators one after the other. Backwards, it returns the way it "
         "came and ends when it reaches the first. Asynchronous, it starts them one after "
         "the other on their own timers.",
         &makeChainOptions(), &GroupsPage::prepareChain, &GroupsPage::startChain},
        {"Se_quencer",
         "A sequencer starts each animator at its own frame of one time line. The time line "
         "goes on during a pause: animators that become due meanwhile start together.",
         &makeSequencerOptions(), &GroupsPage::prepareSequencer, &GroupsPage::startSequencer}};
    for (const auto& kind : kinds_) {
        options_.add(*kind.options, kind.name);
    }
    auto& row = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 18);
    addKindButtons(row);
    options_.set_hexpand();
    row.append(options_);
    curveName_.add_css_class("dim-label");
    row.append(curveName_);
    append(row);
    explanation_.set_wrap();
    explanation_.set_xalign(0);
    // Room for two lines, so that the widgets below keep their place.
    explanation_.set_yalign(0);
    explanation_.set_size_request(-1, 36);
    append(explanation_);
    append(*lanes_);
    event_.set_xalign(0);
    event_.add_css_class("dim-label");
    append(event_);

    stack_->onRemovedItem = [this](const auto& stack, const auto& item) {
        showEvent(nameOf(item) + " has ended and is removed, " + std::to_string(stack->getCount()) +
                  " left.");
    };
    stack_->onFinished = [this](const auto& /*stack*/) { groupEnded("The stack has finished."); };
    chain_->onAnimation = [this](const auto& /*chain*/, const auto& item) {
        showEvent(nameOf(item) + (async_.get_active() ? " is started." : " runs."));
    };
    chain_->onFinished = [this](const auto& /*chain*/) { groupEnded("The chain has finished."); };
    choose(kinds_.front());
    // The chosen curve may have changed while the page was hidden.
    signal_map().connect([this] { prepare(pace_); });
}

GroupsPage::~GroupsPage() {
    GroupsPage::stop();
    stack_->onFinished = nullptr;
    chain_->onFinished = nullptr;
    sequencer_->onFinished = nullptr;
}

void GroupsPage::addKindButtons(Gtk::Box& row) {
    switch_.add_css_class("linked");
    Gtk::ToggleButton* first = nullptr;
    for (const auto& kind : kinds_) {
        auto& button = *Gtk::make_managed<Gtk::ToggleButton>(kind.name, true);
        nameByLabel(button);
        if (first == nullptr) {
            first = &button;
            button.set_active();
        } else {
            button.set_group(*first);
        }
        button.signal_toggled().connect([this, &button, &kind] {
            if (button.get_active()) {
                choose(kind);
            }
        });
        switch_.append(button);
    }
    row.append(switch_);
}

Gtk::Widget& GroupsPage::makeChainOptions() {
    auto& row = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 18);
    for (auto* button : {&backwards_, &async_}) {
        nameByLabel(*button);
        row.append(*button);
    }
    backwards_.signal_toggled().connect([this] { setBackwards(backwards_.get_active()); });
    async_.signal_toggled().connect([this] {
        stop();
        prepare(pace_);
    });
    return row;
}

Gtk::Widget& GroupsPage::makeSequencerOptions() {
    auto& row = *Gtk::make_managed<Gtk::Box>();
    nameByLabel(pause_);
    row.append(pause_);
    pause_.signal_toggled().connect(
        [this] { pause_.get_active() ? sequencer_->pause() : sequencer_->continue_(); });
    return row;
}

void GroupsPage::choose(const Kind& kind) {
    stop();
    kind_ = &kind;
    explanation_.set_text(kind.explanation);
    options_.set_visible_child(*kind.options);
    prepare(pace_);
    showEvent(kReady);
    redraw();
}

void GroupsPage::prepare(const Pace& pace) {
    const auto curve = curve_();
    curveName_.set_text("All follow " + easingName(curve) + ", as chosen under Curves.");
    // On the way back a curve overshoots at the other end.
    const CurveSamples samples(curve);
    lanes_->setOvershoot(std::max(-samples.least, samples.greatest - 1));
    (this->*kind_->prepare)(pace);
}

void GroupsPage::setup(int lane, const Pace& pace, double share) {
    animators_[static_cast<std::size_t>(lane)]->setup(0.0F, 1.0F, part(pace, share),
                                                      static_cast<float>(pace.interval), curve_());
}

void GroupsPage::prepareStack(const Pace& pace) {
    std::vector<std::string> captions;
    for (int lane = 0; lane < kLanes; ++lane) {
        const double share = (lane + 2.0) / (kLanes + 1);
        setup(lane, pace, share);
        captions.push_back(frames(part(pace, share)));
    }
    lanes_->setCaptions(captions);
}

void GroupsPage::prepareChain(const Pace& pace) {
    const double share = async_.get_active() ? 0.5 : 1.0 / kLanes;
    std::vector<std::string> captions;
    for (int lane = 0; lane < kLanes; ++lane) {
        setup(lane, pace, share);
        captions.push_back("Number " + std::to_string(lane + 1) + ", " + frames(part(pace, share)));
    }
    lanes_->setCaptions(captions);
}

void GroupsPage::prepareSequencer(const Pace& pace) {
    makeSequencer();
    std::vector<std::string> captions;
    for (int lane = 0; lane < kLanes; ++lane) {
        const auto begin = pace.frames() * lane / (std::int64_t{2} * (kLanes - 1));
        setup(lane, pace, 0.5);
        sequencer_->add(animators_[static_cast<std::size_t>(lane)], begin);
        captions.push_back("From frame " + std::to_string(begin) + ", " + frames(part(pace, 0.5)));
    }
    lanes_->setCaptions(captions);
}

void GroupsPage::makeSequencer() {
    // A new sequencer each time: the last one would step its scheduled animators at once.
    sequencer_->onFinished = nullptr;
    sequencer_ = std::make_shared<AnimationSequencer>();
    sequencer_->onAnimation = [this](const auto& sequencer, const auto& /*item*/) {
        showEvent("Frame " + std::to_string(sequencer->getCurrentFrame()) + ", " +
                  std::to_string(sequencer->getCurrentCount()) + " running.");
    };
    sequencer_->onFinished = [this](const auto& /*sequencer*/) {
        groupEnded("The sequencer has finished.");
    };
}

void GroupsPage::startStack(const Pace& pace) {
    for (const auto& animator : animators_) {
        stack_->add(animator);
    }
    stack_->interval = static_cast<float>(pace.interval);
    stack_->start();
}

void GroupsPage::startChain(const Pace& pace) {
    for (const auto& animator : animators_) {
        chain_->add(animator);
    }
    chain_->async = async_.get_active();
    // Asynchronous members tick at the pace and start a tenth of the duration apart.
    chain_->interval = static_cast<float>(chain_->async ? pace.duration / 10 : pace.interval);
    backwards_.set_active(false);
    chain_->start();
}

void GroupsPage::startSequencer(const Pace& pace) {
    sequencer_->interval = static_cast<float>(pace.interval);
    sequencer_->start();
}

void GroupsPage::play(const Pace& pace) {
    stop();
    pace_ = pace;
    prepare(pace);
    hasGroupEnded_ = false;
    (this->*kind_->start)(pace);
    setPlaying(true);
}

void GroupsPage::stop() {
    for (const auto& animator : animators_) {
        animator->stop();
    }
    stack_->stop();
    chain_->removeAll();
    sequencer_->stop();
    pause_.set_active(false);
    hasGroupEnded_ = true;
    setPlaying(false);
}

void GroupsPage::showEnd(const Pace& pace) {
    stop();
    pace_ = pace;
    prepare(pace);
    for (const auto& animator : animators_) {
        animator->undo();
    }
    showEvent("All have ended.");
    redraw();
}

void GroupsPage::setBackwards(bool isBackwards) {
    chain_->setBackwards(isBackwards);
    if (!isPlaying() || async_.get_active()) {
        return;
    }
    // Animators that have ended run back.
    for (int lane = 0; lane < kLanes; ++lane) {
        if (animators_[static_cast<std::size_t>(lane)]->isFinished()) {
            animators_[static_cast<std::size_t>(lane)]->setup(1.0F, 0.0F, part(pace_, 1.0 / kLanes),
                                                              static_cast<float>(pace_.interval),
                                                              curve_());
        }
    }
}

void GroupsPage::groupEnded(const std::string& line) {
    hasGroupEnded_ = true;
    showEvent(line);
}

void GroupsPage::showEvent(const std::string& line) {
    if (event_.get_text().raw() != line) {
        event_.set_text(line);
    }
}

std::string GroupsPage::nameOf(const std::shared_ptr<Animator>& animator) const {
    const auto found = std::find(animators_.begin(), animators_.end(), animator);
    return found == animators_.end() ? kNotFound
                                     : "Number " + std::to_string(found - animators_.begin() + 1);
}

void GroupsPage::redraw() {
    lanes_->queue_draw();
    const bool areOnTheirOwn = kind_->options == backwards_.get_parent() && async_.get_active();
    const bool haveEnded = std::all_of(animators_.begin(), animators_.end(),
                                       [](const auto& animator) { return animator->isFinished(); });
    if (hasGroupEnded_ && (!areOnTheirOwn || haveEnded)) {
        setPlaying(false);
    }
}

}  // namespace orvalo
