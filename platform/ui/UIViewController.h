#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/ui/NSCoder.h"
#include "platform/ui/UIResponder.h"
#include "platform/ui/UIView.h"

namespace orvalo {

class UIStoryboard;
class UIStoryboardSegue;
class UIWindow;

/// A screen, or a part of one: the owner of a view. Held by std::shared_ptr. All operations on the
/// main thread; elsewhere a fatal error that names the operation.
class UIViewController : public UIResponder {
  public:
    /// A controller whose view is read from the bundle's layout "<nibName>.ui", from the screen of
    /// the same name; without a name the view is empty.
    UIViewController(const std::optional<std::string>& nibName,
                     const std::shared_ptr<Bundle>& bundle);
    /// A screen of a layout.
    explicit UIViewController(const NSCoder& coder);
    ~UIViewController() override;

    /// The view, which the first call loads and reports with viewDidLoad().
    std::shared_ptr<UIView> view();
    /// Gives the controller a view made by code.
    void setView(const std::shared_ptr<UIView>& view);
    bool isViewLoaded() const { return view_ != nullptr; }

    // Containment: a controller inside another, whose view the caller adds to the other's.
    const std::vector<std::shared_ptr<UIViewController>>& children() const { return children_; }
    std::shared_ptr<UIViewController> parent() const { return parent_.lock(); }
    /// Takes a controller in, out of its present parent.
    void addChild(const std::shared_ptr<UIViewController>& child);
    void removeFromParent();
    /// Called by the parent's owner when the child's view is in place, or gone (an absent parent).
    virtual void didMove(const std::shared_ptr<UIViewController>& toParent);

    // Presentation: a controller above this one, one at a time.
    std::shared_ptr<UIViewController> presentedViewController() const { return presented_; }
    std::shared_ptr<UIViewController> presentingViewController() const {
        return presenting_.lock();
    }
    /// Shows a controller above this one; completion (may be empty) runs when it is shown. While
    /// another one is presented, or this one is not in a window: a line on standard error, and
    /// nothing else.
    void present(const std::shared_ptr<UIViewController>& controller, bool animated,
                 const std::function<void()>& completion);
    /// Takes away what this controller presents, or else itself from above its presenter.
    void dismiss(bool animated, const std::function<void()>& completion);

    /// Takes the segue of that identifier that leads away from this screen in its layout: makes the
    /// destination, calls prepare(), presents. A segue that the layout does not have is a fatal
    /// error that names it.
    void performSegue(const std::string& withIdentifier, const std::shared_ptr<NSObject>& sender);
    /// A segue is about to be performed.
    virtual void prepare(const std::shared_ptr<UIStoryboardSegue>& for_,
                         const std::shared_ptr<NSObject>& sender);

    // The life of the view, in this order. animated: whether it comes or goes in an animation.
    virtual void viewDidLoad();
    /// Every time that the view is about to be shown.
    virtual void viewWillAppear(bool animated);
    /// The view's place or extent, or that of a subview, was laid out anew.
    virtual void viewDidLayoutSubviews();
    /// Every time that the view is shown no more.
    virtual void viewDidDisappear(bool animated);
    virtual void didReceiveMemoryWarning();

    /// The window that shows this controller, itself or a parent or presenter; absent without one.
    std::shared_ptr<UIWindow> window() const;

    bool canPerformAction(const std::string& action,
                          const std::shared_ptr<NSObject>& withSender) override;
    std::shared_ptr<UIResponder> next() const override;

  protected:
    /// Comes on screen above the presenter; shown runs then. Screens fill the presenter's window;
    /// dialogs do otherwise.
    virtual void beginPresentation(const std::shared_ptr<UIViewController>& presenter,
                                   bool animated, const std::function<void()>& shown);
    /// Leaves the screen; gone runs then.
    virtual void endPresentation(bool animated, const std::function<void()>& gone);
    /// For a dialog that has left the screen by itself: the presenter lets go of it.
    void presentationEnded();

  private:
    friend class UIWindow;

    void loadView();
    /// Passes the appearance on to the children too.
    void appear(bool animated);
    void disappear(bool animated);
    void layout();

    std::optional<NSCoder> coder_;
    std::shared_ptr<UIView> view_;
    std::vector<std::shared_ptr<UIViewController>> children_;
    std::weak_ptr<UIViewController> parent_;
    std::shared_ptr<UIViewController> presented_;
    std::weak_ptr<UIViewController> presenting_;
    std::weak_ptr<UIWindow> window_;
    bool isShown_ = false;
};

}  // namespace orvalo
