#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/foundation/FatalError.h"

namespace orvalo {

/// A reference to an object of the layout, which connects it by its id when the screen is loaded.
/// Reference is std::shared_ptr, or std::weak_ptr for an outlet that does not keep the object
/// alive. Main thread.
template <typename Object, template <typename> typename Reference>
class BasicOutlet {
  public:
    /// name: for the error of an unconnected outlet, such as "ViewController.pluginView".
    explicit BasicOutlet(std::string name) : name_(std::move(name)) {}

    void connect(const std::shared_ptr<Object>& object) { object_ = object; }
    bool isConnected() const { return held() != nullptr; }

    /// The object. A fatal error that names the outlet when it is not connected.
    std::shared_ptr<Object> get() const {
        auto object = held();
        if (!object) {
            fatalError("The outlet " + name_ + " is not connected.");
        }
        return object;
    }
    std::shared_ptr<Object> operator->() const { return get(); }

  private:
    std::shared_ptr<Object> held() const {
        if constexpr (std::is_same_v<Reference<Object>, std::weak_ptr<Object>>) {
            return object_.lock();
        } else {
            return object_;
        }
    }

    std::string name_;
    Reference<Object> object_;
};

template <typename Object>
using UIOutlet = BasicOutlet<Object, std::shared_ptr>;
template <typename Object>
using UIWeakOutlet = BasicOutlet<Object, std::weak_ptr>;

}  // namespace orvalo
