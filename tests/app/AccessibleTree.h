#pragma once

#include <string>
#include <utility>
#include <vector>

namespace orvalo::testing {

/// The accessible tree of an application.
class AccessibleTree {
  public:
    /// name: of the running application.
    explicit AccessibleTree(std::string application) : application_(std::move(application)) {}

    /// The names of the sensitive push buttons, in tree order.
    std::vector<std::string> buttons() const;
    /// Whether buttons() contains that name.
    bool shows(const std::string& button) const;
    /// Whether one of the windows has the keyboard focus.
    bool isActive() const;
    /// All names, also of texts, in tree order.
    std::vector<std::string> names() const;
    /// Performs the press action of the object of that name; false without such an object or
    /// action.
    bool press(const std::string& name) const;

  private:
    std::string application_;
};

}  // namespace orvalo::testing
