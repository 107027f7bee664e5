#include "tests/app/AccessibleTree.h"

#include <atspi/atspi.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include "platform/foundation/GLibPointer.h"

namespace orvalo::testing {

namespace {

using Node = GObjectPointer<AtspiAccessible>;

std::string nameOf(AtspiAccessible* node) {
    const GText name(atspi_accessible_get_name(node, nullptr));
    return name ? name.get() : "";
}

bool hasState(AtspiAccessible* node, AtspiStateType state) {
    const GObjectPointer<AtspiStateSet> states(atspi_accessible_get_state_set(node));
    return atspi_state_set_contains(states.get(), state) != FALSE;
}

/// The toolkit reports which buttons are sensitive, not which are covered or off the screen.
bool isUsable(AtspiAccessible* node) {
    return hasState(node, ATSPI_STATE_VISIBLE) && hasState(node, ATSPI_STATE_SENSITIVE);
}

bool isSlider(AtspiAccessible* node, const std::string& name) {
    return atspi_accessible_get_role(node, nullptr) == ATSPI_ROLE_SLIDER && nameOf(node) == name;
}

using Visit = std::function<void(AtspiAccessible*)>;

void walk(AtspiAccessible* node, const Visit& visit) {
    if (!isUsable(node)) {
        return;
    }
    visit(node);
    const int count = atspi_accessible_get_child_count(node, nullptr);
    for (int index = 0; index < count; ++index) {
        if (const Node child{atspi_accessible_get_child_at_index(node, index, nullptr)}) {
            walk(child.get(), visit);
        }
    }
}

void visitWindows(AtspiAccessible* application, const Visit& visit) {
    const int count = atspi_accessible_get_child_count(application, nullptr);
    for (int index = 0; index < count; ++index) {
        const Node window(atspi_accessible_get_child_at_index(application, index, nullptr));
        if (window) {
            walk(window.get(), visit);
        }
    }
}

void visitAll(const std::string& application, const Visit& visit) {
    static const int initialised = atspi_init();
    (void)initialised;
    const Node desktop(atspi_get_desktop(0));
    // The cached tree may be out of date.
    atspi_accessible_clear_cache(desktop.get());
    const int count = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (int index = 0; index < count; ++index) {
        const Node found(atspi_accessible_get_child_at_index(desktop.get(), index, nullptr));
        if (found && nameOf(found.get()) == application) {
            visitWindows(found.get(), visit);
        }
    }
}

}  // namespace

std::vector<std::string> AccessibleTree::buttons() const {
    std::vector<std::string> result;
    visitAll(application_, [&result](AtspiAccessible* node) {
        if (atspi_accessible_get_role(node, nullptr) == ATSPI_ROLE_PUSH_BUTTON) {
            result.push_back(nameOf(node));
        }
    });
    return result;
}

bool AccessibleTree::shows(const std::string& button) const {
    const auto all = buttons();
    return std::find(all.begin(), all.end(), button) != all.end();
}

bool AccessibleTree::isActive() const {
    bool result = false;
    visitAll(application_, [&result](AtspiAccessible* node) {
        result = result || hasState(node, ATSPI_STATE_ACTIVE);
    });
    return result;
}

bool AccessibleTree::isOn(const std::string& control) const {
    bool result = false;
    visitAll(application_, [&](AtspiAccessible* node) {
        result = result || (nameOf(node) == control && hasState(node, ATSPI_STATE_CHECKED));
    });
    return result;
}

std::vector<std::string> AccessibleTree::names() const {
    std::vector<std::string> result;
    visitAll(application_, [&result](AtspiAccessible* node) {
        if (auto name = nameOf(node); !name.empty()) {
            result.push_back(std::move(name));
        }
    });
    return result;
}

std::optional<double> AccessibleTree::value(const std::string& slider) const {
    std::optional<double> result;
    visitAll(application_, [&](AtspiAccessible* node) {
        if (!result && isSlider(node, slider)) {
            const GObjectPointer<AtspiValue> value(atspi_accessible_get_value_iface(node));
            result = atspi_value_get_current_value(value.get(), nullptr);
        }
    });
    return result;
}

bool AccessibleTree::setValue(const std::string& slider, double value) const {
    bool isSet = false;
    visitAll(application_, [&](AtspiAccessible* node) {
        if (!isSet && isSlider(node, slider)) {
            const GObjectPointer<AtspiValue> set(atspi_accessible_get_value_iface(node));
            isSet = atspi_value_set_current_value(set.get(), value, nullptr) != FALSE;
        }
    });
    return isSet;
}

std::vector<AccessibleTree::Text> AccessibleTree::texts() const {
    std::vector<Text> result;
    visitAll(application_, [&result](AtspiAccessible* node) {
        const GObjectPointer<AtspiComponent> component(atspi_accessible_get_component_iface(node));
        if (atspi_accessible_get_role(node, nullptr) != ATSPI_ROLE_LABEL || !component) {
            return;
        }
        const std::unique_ptr<AtspiRect, Release<g_free>> place(
            atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_WINDOW, nullptr));
        if (place != nullptr) {
            result.push_back({nameOf(node), place->x, place->y, place->width, place->height});
        }
    });
    return result;
}

bool AccessibleTree::press(const std::string& name) const {
    bool isPressed = false;
    visitAll(application_, [&](AtspiAccessible* node) {
        if (!isPressed && nameOf(node) == name) {
            const GObjectPointer<AtspiAction> action(atspi_accessible_get_action_iface(node));
            isPressed = action && atspi_action_do_action(action.get(), 0, nullptr) != FALSE;
        }
    });
    return isPressed;
}

}  // namespace orvalo::testing
