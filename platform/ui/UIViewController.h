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

class UIStoryboardSegue;
class UIWindow;

/// A screen or a part of one: the owner of a view. All operations on the main thread; elsewhere a
/// fatal error that names the operation.
class UIViewController : public UIResponder {
  public:
    /// A controller whose view is the screen "<nibName>" of the bundle's layout "<nibName>.ui".
    /// Without a name the view is empty. bundle: null for the main bundle.
    UIViewController(const std::optional<std::string>& nibName,
                     const std::shared_ptr<Bundle>& bundle);
    /// A screen of a layout.
    explicit UIViewController(const NSCoder& coder);
    ~UIViewController() override;

    /// The view. The first call loads it and then calls viewDidLoad().
    std::shared_ptr<UIView> view();
    /// Sets a view made by code.
    void setView(const std::shared_ptr<UIView>& view);
    bool isViewLoaded() const { return view_ != nullptr; }

    /// The name of what it shows; "" for none.
    const std::string& title() const { return title_; }
    void setTitle(const std::string& title) { title_ = title; }

    // Containment: a controller inside another. The caller adds the child's view to the parent's.
    const std::vector<std::shared_ptr<UIViewController>>& children() const { return children_; }
    std::shared_ptr<UIViewController> parent() const { return parent_.lock(); }
    /// Adds a child, after removing it from its current parent.
    void addChild(const std::shared_ptr<UIViewController>& child);
    void removeFromParent();
    /// To be called after the child's view was added to the parent's, or removed (a null parent).
    virtual void didMove(const std::shared_ptr<UIViewController>& toParent);

    // Presentation: another controller above this one, one at a time.
    std::shared_ptr<UIViewController> presentedViewController() const { return presented_; }
    std::shared_ptr<UIViewController> presentingViewController() const {
        return presenting_.lock();
    }
    /// Shows a controller above this one. completion (may be empty): called when it is shown. Only
    /// logs a warning while another one is presented, or when this one is in no window.
    void present(const std::shared_ptr<UIViewController>& controller, bool animated,
                 const std::function<void()>& completion);
    /// Removes the controller that this one presents; without one, removes this one.
    void dismiss(bool animated, const std::function<void()>& completion);

    /// Performs the segue of that identifier from this screen: creates the destination, calls
    /// prepare() and presents it. A segue that the layout does not have is a fatal error.
    void performSegue(const std::string& withIdentifier, const std::shared_ptr<NSObject>& sender);
    /// Called before a segue's destination is presented.
    virtual void prepare(const std::shared_ptr<UIStoryboardSegue>& for_,
                         const std::shared_ptr<NSObject>& sender);

    // The life of the view, in this order. animated: whether it appears or disappears animated.
    virtual void viewDidLoad();
    /// Called every time before the view is shown.
    virtual void viewWillAppear(bool animated);
    /// Called after the view and its subviews were laid out.
    virtual void viewDidLayoutSubviews();
    /// Called every time after the view was hidden.
    virtual void viewDidDisappear(bool animated);
    virtual void didReceiveMemoryWarning();

    /// The window of this controller, its parent or its presenter; absent when there is none.
    std::shared_ptr<UIWindow> window() const;

    bool canPerformAction(const std::string& action,
                          const std::shared_ptr<NSObject>& withSender) override;
    std::shared_ptr<UIResponder> next() const override;

  protected:
    /// Shows this controller above the presenter. shown: called when it is shown. The default fills
    /// the presenter's window; dialogs override it.
    virtual void beginPresentation(const std::shared_ptr<UIViewController>& presenter,
                                   bool animated, const std::function<void()>& shown);
    /// Removes this controller from the screen. gone: called after that.
    virtual void endPresentation(bool animated, const std::function<void()>& gone);
    /// To be called when a dialog has closed by itself: the presenter releases it.
    void presentationEnded();

  private:
    friend class UIWindow;

    void loadView();
    // With the children.
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
    std::string title_;
    bool isShown_ = false;
};

}  // namespace orvalo
