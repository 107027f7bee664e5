#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"
#include "platform/ui/UIView.h"

namespace orvalo {

class UIResponder;
class UIViewController;
class UIWindow;

/// The interface layout, a GtkBuilder file. Every object at its top is the window
/// (GtkApplicationWindow), a segue (UIStoryboardSegue) or else a screen, whose id is the name of
/// its class. A segue's properties: identifier, source, destination, presentation ("fullScreen")
/// and, optional, trigger, the id of the button in the source that takes it. Inside a screen, ids
/// are outlets, except those that begin with "_", which are the layout's own, and the handlers of
/// signals are actions. The first screen is where the application begins. Main thread.
class UIStoryboard : public NSObject {
  public:
    /// Reads a layout. Throws NSError, naming the file, when it cannot be read or parsed.
    static std::shared_ptr<UIStoryboard> load(const URL& url);

    /// What the layout names and no class has, one sentence each; also on standard error when the
    /// layout is loaded.
    const std::vector<std::string>& problems() const { return problems_; }

    /// A new controller of the first screen's class. A layout without a screen, or a screen of an
    /// unknown class, is a fatal error.
    std::shared_ptr<UIViewController> instantiateInitialViewController();
    std::shared_ptr<UIViewController> instantiateViewController(const std::string& withIdentifier);

    /// A segue as the layout has it.
    struct Segue {
        std::string identifier;
        std::string source;
        std::string destination;
        std::string presentation;
        std::string trigger;
    };
    /// The layout's window, without content, or else a plain one.
    std::shared_ptr<UIWindow> makeWindow() const;

    /// The segue of that identifier out of a screen; null without one.
    const Segue* segue(const std::string& source, const std::string& identifier) const;

    /// Makes a screen's views, connects its outlets, actions and segues to the owner, and returns
    /// the view that holds them.
    std::shared_ptr<UIView> makeView(const std::string& screen,
                                     const std::shared_ptr<UIViewController>& owner) const;

  private:
    struct Screen {
        std::string name;
        std::vector<std::string> outlets;
        std::vector<std::string> actions;
    };
    friend class UIStoryboardReader;

    explicit UIStoryboard(std::string name) : name_(std::move(name)) {}
    void check();
    void check(const Screen& screen);
    void check(const Segue& segue);
    const Screen* screen(const std::string& name) const;

    std::string name_;
    std::map<std::string, std::string> objects_;  // The layouts of single objects, by id.
    std::vector<Screen> screens_;
    std::vector<Segue> segues_;
    std::string window_;  // The window's id; empty without one.
    std::vector<std::string> problems_;
};

}  // namespace orvalo
