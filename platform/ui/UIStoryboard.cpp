#include "platform/ui/UIStoryboard.h"

#include <glib.h>

#include <algorithm>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/FileContents.h"
#include "platform/foundation/NSError.h"
#include "platform/ui/LayoutBuilder.h"
#include "platform/ui/MainThread.h"
#include "platform/ui/NSCoder.h"
#include "platform/ui/UIClass.h"
#include "platform/ui/UIStoryboardReader.h"
#include "platform/ui/UIViewController.h"
#include "platform/ui/UIWindow.h"

namespace orvalo {

namespace {

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

std::shared_ptr<UIStoryboard> UIStoryboard::load(const URL& url) {
    requireMainThread("UIStoryboard.load");
    std::shared_ptr<UIStoryboard> storyboard(new UIStoryboard(url.path()));
    const auto content = contentsOfFile(url.path());
    UIStoryboardReader(*storyboard).read(url.path(), std::string(content.begin(), content.end()));
    storyboard->check();
    for (const auto& problem : storyboard->problems_) {
        g_warning("%s", problem.c_str());
    }
    return storyboard;
}

std::shared_ptr<UIStoryboard> UIStoryboard::required(const Bundle& bundle,
                                                     const std::string& name) {
    const auto url = bundle.url(name, "ui");
    if (!url) {
        fatalError("The bundle has no layout \"" + name + ".ui\".");
    }
    try {
        return load(*url);
    } catch (const NSError& error) {
        fatalError(error.localizedDescription());
    }
}

void UIStoryboard::check() {
    for (const auto& screen : screens_) {
        check(screen);
    }
    for (const auto& segue : segues_) {
        check(segue);
    }
}

void UIStoryboard::check(const Screen& screen) {
    const auto* known = UIClass::named(screen.name);
    if (known == nullptr) {
        problems_.push_back(name_ + ": there is no class for the screen \"" + screen.name + "\".");
        return;
    }
    for (const auto& outlet : screen.outlets) {
        if (!known->hasOutlet(outlet)) {
            problems_.push_back(name_ + ": " + screen.name + " has no outlet \"" + outlet + "\".");
        }
    }
    for (const auto& action : screen.actions) {
        if (!known->hasAction(action)) {
            problems_.push_back(name_ + ": " + screen.name + " has no action \"" + action + "\".");
        }
    }
}

void UIStoryboard::check(const Segue& segue) {
    const auto name = name_ + ": the segue \"" + segue.identifier + "\"";
    const auto* source = screen(segue.source);
    if (source == nullptr) {
        problems_.push_back(name + " leaves from \"" + segue.source + "\", which is no screen.");
    } else if (!segue.trigger.empty() && !contains(source->outlets, segue.trigger)) {
        problems_.push_back(name + " is taken by \"" + segue.trigger + "\", which " + segue.source +
                            " does not have.");
    }
    if (screen(segue.destination) == nullptr) {
        problems_.push_back(name + " leads to \"" + segue.destination + "\", which is no screen.");
    }
    if (segue.presentation != "fullScreen") {
        problems_.push_back(name + " has the presentation \"" + segue.presentation +
                            "\", which is unknown.");
    }
}

const UIStoryboard::Screen* UIStoryboard::screen(const std::string& name) const {
    const auto found = std::find_if(screens_.begin(), screens_.end(),
                                    [&name](const auto& screen) { return screen.name == name; });
    return found == screens_.end() ? nullptr : &*found;
}

const UIStoryboard::Segue* UIStoryboard::segue(const std::string& source,
                                               const std::string& identifier) const {
    const auto found = std::find_if(segues_.begin(), segues_.end(), [&](const auto& segue) {
        return segue.source == source && segue.identifier == identifier;
    });
    return found == segues_.end() ? nullptr : &*found;
}

std::shared_ptr<UIViewController> UIStoryboard::instantiateInitialViewController() {
    if (screens_.empty()) {
        fatalError(name_ + " has no screen.");
    }
    return instantiateViewController(screens_.front().name);
}

std::shared_ptr<UIViewController> UIStoryboard::instantiateViewController(
    const std::string& withIdentifier) {
    requireMainThread("UIStoryboard.instantiateViewController");
    const auto* known = UIClass::named(withIdentifier);
    if (screen(withIdentifier) == nullptr || known == nullptr) {
        fatalError(name_ + ": there is no screen of the class \"" + withIdentifier + "\".");
    }
    const NSCoder coder(shared(this), withIdentifier);
    auto controller = std::dynamic_pointer_cast<UIViewController>(known->make(&coder));
    if (!controller) {
        fatalError(name_ + ": the class \"" + withIdentifier + "\" is no screen's.");
    }
    return controller;
}

std::shared_ptr<UIView> UIStoryboard::makeView(
    const std::string& screen, const std::shared_ptr<UIViewController>& owner) const {
    const auto* known = UIClass::named(screen);
    const auto* described = this->screen(screen);
    if (described == nullptr || known == nullptr) {
        fatalError(name_ + ": there is no screen of the class \"" + screen + "\".");
    }
    const LayoutBuilder builder(name_, objects_.at(screen), *known, owner);
    auto view = UIView::of(builder.widget(screen));
    for (const auto& outlet : described->outlets) {
        if (known->hasOutlet(outlet)) {
            known->connect(*owner, outlet, UIView::of(builder.widget(outlet)));
        }
    }
    for (const auto& segue : segues_) {
        if (segue.source == screen && contains(described->outlets, segue.trigger)) {
            builder.connectSegue(segue.trigger, segue.identifier);
        }
    }
    return view;
}

std::shared_ptr<UIWindow> UIStoryboard::makeWindow() const {
    return std::make_shared<UIWindow>(
        window_.empty() ? LayoutBuilder::plainWindow()
                        : LayoutBuilder(name_, objects_.at(window_)).widget(window_));
}

}  // namespace orvalo
