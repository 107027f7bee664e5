#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSObject.h"
#include "platform/ui/NSCoder.h"
#include "platform/ui/UIOutlet.h"
#include "platform/ui/UIResponder.h"
#include "platform/ui/UIView.h"

namespace orvalo {

/// A class that the layout or UIApplicationMain() names by text: its factory, outlets and actions.
/// Main thread.
class UIClass {
  public:
    /// C is constructed from an NSCoder (a screen) or by default (an application delegate).
    template <typename C>
    static UIClass of(std::string name) {
        UIClass result(std::move(name));
        result.make_ = [](const NSCoder* coder) -> std::shared_ptr<UIResponder> {
            if constexpr (std::is_constructible_v<C, const NSCoder&>) {
                return coder ? std::make_shared<C>(*coder) : nullptr;
            } else {
                return std::make_shared<C>();
            }
        };
        return result;
    }

    /// Adds an outlet: a data member of the class.
    template <typename C, typename Object, template <typename> typename Reference>
    UIClass& outlet(const std::string& name, BasicOutlet<Object, Reference> C::*member) {
        outlets_[name] = [name, member](UIResponder& owner, const std::shared_ptr<UIView>& view) {
            auto object = std::dynamic_pointer_cast<Object>(view);
            if (!object) {
                fatalError("The layout's object \"" + name +
                           "\" is of another class than its outlet.");
            }
            (dynamic_cast<C&>(owner).*member).connect(object);
        };
        return *this;
    }

    /// Adds an action: an operation of the class. Sender: NSObject or the class of the senders.
    template <typename C, typename Sender>
    UIClass& action(const std::string& name, void (C::*operation)(const std::shared_ptr<Sender>&)) {
        actions_[name] = [name, operation](UIResponder& owner,
                                           const std::shared_ptr<NSObject>& from) {
            auto sender = std::dynamic_pointer_cast<Sender>(from);
            if (from && !sender) {
                fatalError("The action \"" + name + "\" was sent by an object of another class.");
            }
            (dynamic_cast<C&>(owner).*operation)(sender);
        };
        return *this;
    }

    const std::string& name() const { return name_; }
    bool hasOutlet(const std::string& name) const { return outlets_.contains(name); }
    bool hasAction(const std::string& name) const { return actions_.contains(name); }

    /// A new object; null for a screen without a coder.
    std::shared_ptr<UIResponder> make(const NSCoder* coder) const { return make_(coder); }
    /// Connects an existing outlet. A view of another class is a fatal error.
    void connect(UIResponder& owner, const std::string& outlet,
                 const std::shared_ptr<UIView>& view) const {
        outlets_.at(outlet)(owner, view);
    }
    /// Performs an existing action.
    void perform(UIResponder& owner, const std::string& action,
                 const std::shared_ptr<NSObject>& sender) const {
        actions_.at(action)(owner, sender);
    }

    /// Registers a class by its name, in place of an older one of that name.
    static void registerClass(UIClass description);
    /// The registered class of that name, or null.
    static const UIClass* named(const std::string& name);

  private:
    explicit UIClass(std::string name) : name_(std::move(name)) {}

    std::string name_;
    std::function<std::shared_ptr<UIResponder>(const NSCoder*)> make_;
    std::map<std::string, std::function<void(UIResponder&, const std::shared_ptr<UIView>&)>>
        outlets_;
    std::map<std::string, std::function<void(UIResponder&, const std::shared_ptr<NSObject>&)>>
        actions_;
};

}  // namespace orvalo
