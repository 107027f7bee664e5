#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"
#include "platform/ui/UIView.h"

namespace orvalo {

class UIViewController;
class UIWindow;

/// A layout of screens: a GtkBuilder file. Its top-level objects are the window
/// (GtkApplicationWindow), segues (UIStoryboardSegue) and screens. A screen's id is the name of its
/// class. A segue's properties: identifier, source, destination, presentation ("fullScreen") and
/// optionally trigger, the id of a button in the source. Inside a screen, ids are outlets, except
/// those that begin with "_", and handlers of signals are actions. The first screen is the initial
/// one. Main thread.
class UIStoryboard : public NSObject {
  public:
    /// Reads a layout. Throws NSError, naming the file, when it cannot be read or parsed.
    static std::shared_ptr<UIStoryboard> load(const URL& url);
    /// The bundle's layout "<name>.ui". A missing or damaged layout is a fatal error.
    static std::shared_ptr<UIStoryboard> required(const Bundle& bundle, const std::string& name);

    /// The classes, outlets, actions and screens that the layout names and that do not exist, one
    /// sentence each. load() logs them.
    const std::vector<std::string>& problems() const { return problems_; }

    /// A new controller of the first screen's class. A layout without a screen, or a screen of an
    /// unknown class, is a fatal error.
    std::shared_ptr<UIViewController> instantiateInitialViewController();
    std::shared_ptr<UIViewController> instantiateViewController(const std::string& withIdentifier);

    /// A segue of the layout.
    struct Segue {
        std::string identifier;
        std::string source;
        std::string destination;
        std::string presentation;
        std::string trigger;
    };
    /// The layout's window without content, or a plain window when the layout has none.
    std::shared_ptr<UIWindow> makeWindow() const;

    /// The segue of that identifier from a screen; null when there is none.
    const Segue* segue(const std::string& source, const std::string& identifier) const;

    /// Creates a screen's views, connects its outlets, actions and segues to the owner, and returns
    /// the root view.
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
    std::map<std::string, std::string> objects_;  // The text of each top-level object, by id.
    std::vector<Screen> screens_;
    std::vector<Segue> segues_;
    std::string window_;  // The window's id, or empty.
    std::vector<std::string> problems_;
};

}  // namespace orvalo
