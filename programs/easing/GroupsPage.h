#pragma once

#include <gtkmm/checkbutton.h>
#include <gtkmm/label.h>
#include <gtkmm/stack.h>
#include <gtkmm/togglebutton.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "animation/AnimationSequencer.h"
#include "animation/Animator.h"
#include "animation/AnimatorChain.h"
#include "animation/AnimatorStack.h"
#include "programs/easing/DemoPage.h"

namespace orvalo {

class Lanes;

/// Five animators in a stack, a chain or a sequencer, as chosen.
class GroupsPage : public DemoPage {
  public:
    /// curve: returns the curve that the animators follow; called at every start.
    explicit GroupsPage(std::function<EnumEasing()> curve);
    ~GroupsPage() override;

    void play(const Pace& pace) override;
    void stop() override;
    void showEnd(const Pace& pace) override;

  protected:
    void redraw() override;

  private:
    /// A kind of group: its name with a mnemonic, its explanation and options, and the functions
    /// that prepare and start it.
    struct Kind {
        std::string name;
        std::string explanation;
        Gtk::Widget* options;
        void (GroupsPage::*prepare)(const Pace& pace);
        void (GroupsPage::*start)(const Pace& pace);
    };

    void addKindButtons(Gtk::Box& row);
    void choose(const Kind& kind);
    Gtk::Widget& makeChainOptions();
    Gtk::Widget& makeSequencerOptions();

    void prepare(const Pace& pace);
    void prepareStack(const Pace& pace);
    void prepareChain(const Pace& pace);
    void prepareSequencer(const Pace& pace);
    void startStack(const Pace& pace);
    void startChain(const Pace& pace);
    void startSequencer(const Pace& pace);
    void setup(int lane, const Pace& pace, double share);
    void makeSequencer();
    void setBackwards(bool isBackwards);

    void showEvent(const std::string& line);
    std::string nameOf(const std::shared_ptr<Animator>& animator) const;
    void groupEnded(const std::string& line);

    std::function<EnumEasing()> curve_;
    std::vector<std::shared_ptr<Animator>> animators_;
    std::vector<Kind> kinds_;
    const Kind* kind_ = nullptr;
    Pace pace_;
    bool hasGroupEnded_ = true;

    std::shared_ptr<AnimatorStack> stack_ = std::make_shared<AnimatorStack>();
    std::shared_ptr<AnimatorChain> chain_ = std::make_shared<AnimatorChain>();
    std::shared_ptr<AnimationSequencer> sequencer_ = std::make_shared<AnimationSequencer>();

    Gtk::Box switch_{Gtk::Orientation::HORIZONTAL};
    Gtk::Label explanation_;
    Gtk::Stack options_;
    Gtk::Label curveName_;
    Gtk::CheckButton backwards_{"_Backwards", true};
    Gtk::CheckButton async_{"_Asynchronous", true};
    Gtk::ToggleButton pause_{"Pa_use", true};
    Lanes* lanes_;
    Gtk::Label event_;
};

}  // namespace orvalo
