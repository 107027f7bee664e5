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

/// A class that the layout or the application's start names by text: how an object of it is made,
/// and which outlets and actions it offers to the layout. Main thread.
class UIClass {
  public:
    /// C is made from an NSCoder (a screen) or by its default constructor (a delegate).
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

    /// An outlet: a data member of the class.
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

    /// An action: an operation of the class that takes the sender, as an NSObject or of a class
    /// that the senders have.
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

    /// A new object; absent for a screen without a coder.
    std::shared_ptr<UIResponder> make(const NSCoder* coder) const { return make_(coder); }
    /// Connects an outlet that the class has. A view of another class is a fatal error.
    void connect(UIResponder& owner, const std::string& outlet,
                 const std::shared_ptr<UIView>& view) const {
        outlets_.at(outlet)(owner, view);
    }
    /// Performs an action that the class has.
    void perform(UIResponder& owner, const std::string& action,
                 const std::shared_ptr<NSObject>& sender) const {
        actions_.at(action)(owner, sender);
    }

    /// Makes a class known by its name, in place of an older one of that name.
    static void registerClass(UIClass description);
    /// The class of that name; null when nobody registered it.
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
