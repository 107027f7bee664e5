#pragma once

#include <optional>
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
    /// Whether a control of that name is on.
    bool isOn(const std::string& control) const;
    /// All names, also of texts, in tree order.
    std::vector<std::string> names() const;
    /// The value of the slider of that name; absent without one.
    std::optional<double> value(const std::string& slider) const;
    /// Sets it; false without such a slider.
    bool setValue(const std::string& slider, double value) const;

    /// A text and its place in its window, in pixels.
    struct Text {
        std::string text;
        int x;
        int y;
        int width;
        int height;
    };
    /// The labels, in tree order.
    std::vector<Text> texts() const;

    /// Performs the press action of the object of that name; false without such an object or
    /// action.
    bool press(const std::string& name) const;

  private:
    std::string application_;
};

}  // namespace orvalo::testing
