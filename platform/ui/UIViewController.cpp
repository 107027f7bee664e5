#include "platform/ui/UIViewController.h"

#include <glib.h>

#include <algorithm>
#include <utility>

#include "platform/foundation/FatalError.h"
#include "platform/ui/MainThread.h"
#include "platform/ui/UIClass.h"
#include "platform/ui/UIStoryboard.h"
#include "platform/ui/UIStoryboardSegue.h"
#include "platform/ui/UIWindow.h"

namespace orvalo {

namespace {

std::optional<NSCoder> coderFor(const std::optional<std::string>& nibName,
                                const std::shared_ptr<Bundle>& bundle) {
    if (!nibName) {
        return std::nullopt;
    }
    return NSCoder(UIStoryboard::required(bundle ? *bundle : *Bundle::main(), *nibName), *nibName);
}

}  // namespace

UIViewController::UIViewController(const std::optional<std::string>& nibName,
                                   const std::shared_ptr<Bundle>& bundle)
    : coder_(coderFor(nibName, bundle)) {
    requireMainThread("UIViewController");
}

UIViewController::UIViewController(const NSCoder& coder) : coder_(coder) {
    requireMainThread("UIViewController");
}

UIViewController::~UIViewController() = default;

std::shared_ptr<UIView> UIViewController::view() {
    requireMainThread("UIViewController.view");
    if (!view_) {
        loadView();
        viewDidLoad();
    }
    return view_;
}

void UIViewController::setView(const std::shared_ptr<UIView>& view) {
    requireMainThread("UIViewController.view");
    view_ = view;
    if (view) {
        view->controller_ = weak(this);
    }
}

void UIViewController::loadView() {
    setView(coder_ ? coder_->storyboard()->makeView(coder_->screen(), shared(this))
                   : std::make_shared<UIView>());
}

void UIViewController::addChild(const std::shared_ptr<UIViewController>& child) {
    requireMainThread("UIViewController.addChild");
    child->removeFromParent();
    children_.push_back(child);
    child->parent_ = weak(this);
}

void UIViewController::removeFromParent() {
    requireMainThread("UIViewController.removeFromParent");
    if (const auto parent = parent_.lock()) {
        parent_.reset();
        std::erase(parent->children_, shared(this));
    }
}

void UIViewController::didMove(const std::shared_ptr<UIViewController>& toParent) {
    requireMainThread("UIViewController.didMove");
    if (toParent && toParent->isShown_) {
        appear(false);
    }
}

void UIViewController::present(const std::shared_ptr<UIViewController>& controller, bool animated,
                               const std::function<void()>& completion) {
    requireMainThread("UIViewController.present");
    if (presented_ || !window()) {
        g_warning("A controller is not presented: %s.",
                  presented_ ? "another one is shown above its presenter"
                             : "its presenter is in no window");
        return;
    }
    presented_ = controller;
    controller->presenting_ = weak(this);
    controller->beginPresentation(shared(this), animated, completion);
}

void UIViewController::dismiss(bool animated, const std::function<void()>& completion) {
    requireMainThread("UIViewController.dismiss");
    if (const auto presented = presented_) {
        presented->presentationEnded();
        presented->endPresentation(animated, completion);
    } else if (const auto presenter = presenting_.lock()) {
        presenter->dismiss(animated, completion);
    }
}

void UIViewController::presentationEnded() {
    if (const auto presenter = presenting_.lock()) {
        presenter->presented_.reset();
        presenting_.reset();
    }
}

void UIViewController::beginPresentation(const std::shared_ptr<UIViewController>& presenter,
                                         bool animated, const std::function<void()>& shown) {
    presenter->window()->push(shared(this), animated, shown);
}

void UIViewController::endPresentation(bool animated, const std::function<void()>& gone) {
    if (const auto window = window_.lock()) {
        window->pop(shared(this), animated, gone);
    }
}

void UIViewController::performSegue(const std::string& withIdentifier,
                                    const std::shared_ptr<NSObject>& sender) {
    requireMainThread("UIViewController.performSegue");
    const auto* described =
        coder_ ? coder_->storyboard()->segue(coder_->screen(), withIdentifier) : nullptr;
    if (described == nullptr) {
        fatalError("There is no segue \"" + withIdentifier + "\" out of this screen.");
    }
    const auto destination =
        coder_->storyboard()->instantiateViewController(described->destination);
    prepare(std::make_shared<UIStoryboardSegue>(withIdentifier, shared(this), destination), sender);
    present(destination, true, nullptr);
}

void UIViewController::prepare(const std::shared_ptr<UIStoryboardSegue>& /*for_*/,
                               const std::shared_ptr<NSObject>& /*sender*/) {}

void UIViewController::viewDidLoad() {}

void UIViewController::viewWillAppear(bool /*animated*/) {}

void UIViewController::viewDidLayoutSubviews() {}

void UIViewController::viewDidDisappear(bool /*animated*/) {}

void UIViewController::didReceiveMemoryWarning() {}

void UIViewController::appear(bool animated) {
    if (std::exchange(isShown_, true)) {
        return;
    }
    view();
    viewWillAppear(animated);
    for (const auto& child : std::vector(children_)) {
        child->appear(animated);
    }
}

void UIViewController::disappear(bool animated) {
    if (!std::exchange(isShown_, false)) {
        return;
    }
    viewDidDisappear(animated);
    for (const auto& child : std::vector(children_)) {
        child->disappear(animated);
    }
}

void UIViewController::layout() {
    viewDidLayoutSubviews();
    for (const auto& child : std::vector(children_)) {
        child->layout();
    }
}

std::shared_ptr<UIWindow> UIViewController::window() const {
    if (auto window = window_.lock()) {
        return window;
    }
    const auto around = parent();
    const auto presenter = presenting_.lock();
    return around ? around->window() : presenter ? presenter->window() : nullptr;
}

bool UIViewController::canPerformAction(const std::string& action,
                                        const std::shared_ptr<NSObject>& withSender) {
    const auto* known = coder_ ? UIClass::named(coder_->screen()) : nullptr;
    return (known != nullptr && known->hasAction(action)) ||
           UIResponder::canPerformAction(action, withSender);
}

std::shared_ptr<UIResponder> UIViewController::next() const {
    if (auto around = parent()) {
        return around;
    }
    return window_.lock();
}

}  // namespace orvalo
