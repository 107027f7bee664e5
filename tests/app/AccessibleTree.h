#pragma once

#include <string>
#include <utility>
#include <vector>

namespace orvalo::testing {

/// What assistive technology sees of an application.
class AccessibleTree {
  public:
    /// Of the running application of that name.
    explicit AccessibleTree(std::string application) : application_(std::move(application)) {}

    /// The names of the push buttons that can be used now, in the order of the tree.
    std::vector<std::string> buttons() const;
    /// Whether there is a button of that name among them.
    bool shows(const std::string& button) const;
    /// The names of everything that has one, texts included, in the order of the tree.
    std::vector<std::string> names() const;
    /// Presses what has that name, as assistive technology does; false when there is no such thing,
    /// or it cannot be pressed.
    bool press(const std::string& name) const;

  private:
    std::string application_;
};

}  // namespace orvalo::testing
