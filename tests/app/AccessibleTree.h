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
    /// Presses a button as assistive technology does; false when there is no such one.
    bool press(const std::string& button) const;

  private:
    std::string application_;
};

}  // namespace orvalo::testing
