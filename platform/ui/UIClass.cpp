#include "platform/ui/UIClass.h"

namespace orvalo {

namespace {

std::map<std::string, UIClass>& classes() {
    static auto* const known = new std::map<std::string, UIClass>;
    return *known;
}

}  // namespace

void UIClass::registerClass(UIClass description) {
    const auto name = description.name();
    classes().insert_or_assign(name, std::move(description));
}

const UIClass* UIClass::named(const std::string& name) {
    const auto found = classes().find(name);
    return found == classes().end() ? nullptr : &found->second;
}

}  // namespace orvalo
