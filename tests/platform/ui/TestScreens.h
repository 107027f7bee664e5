#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/ui/UIButton.h"
#include "platform/ui/UIOutlet.h"
#include "platform/ui/UIStoryboardSegue.h"
#include "platform/ui/UIViewController.h"

namespace orvalo::testing {

/// The calls of the test screens in order, such as "FirstScreen viewDidLoad", without layouts.
std::vector<std::string>& events();

/// A screen that records its calls.
class WitnessScreen : public UIViewController {
  public:
    explicit WitnessScreen(std::string name)
        : UIViewController(std::nullopt, nullptr), name_(std::move(name)) {}
    WitnessScreen(const NSCoder& coder, std::string name)
        : UIViewController(coder), name_(std::move(name)) {}

    void viewDidLoad() override { note("viewDidLoad"); }
    void viewWillAppear(bool animated) override { note("viewWillAppear", animated); }
    void viewDidLayoutSubviews() override { ++layouts; }
    void viewDidDisappear(bool animated) override { note("viewDidDisappear", animated); }

    int layouts = 0;

  protected:
    void note(const std::string& event) { events().push_back(name_ + " " + event); }
    void note(const std::string& event, bool animated) {
        note(event + (animated ? " animated" : ""));
    }

  private:
    std::string name_;
};

/// A screen of the test layouts: outlets "box" and "button", actions "press" and "pressButton".
class FirstScreen : public WitnessScreen {
  public:
    explicit FirstScreen(const NSCoder& coder) : WitnessScreen(coder, "FirstScreen") {}

    void press(const std::shared_ptr<NSObject>& sender);
    void pressButton(const std::shared_ptr<UIButton>& sender);
    void prepare(const std::shared_ptr<UIStoryboardSegue>& for_,
                 const std::shared_ptr<NSObject>& sender) override;

    UIOutlet<UIView> box{"FirstScreen.box"};
    UIOutlet<UIButton> button{"FirstScreen.button"};
    std::vector<std::shared_ptr<NSObject>> senders;
    std::vector<std::shared_ptr<UIStoryboardSegue>> segues;
};

/// A screen without outlets or actions.
class SecondScreen : public WitnessScreen {
  public:
    explicit SecondScreen(const NSCoder& coder) : WitnessScreen(coder, "SecondScreen") {}
};

/// Registers both classes.
void registerTestScreens();

}  // namespace orvalo::testing
