#include "effect/ContextName.h"

#include <cstring>

namespace orvalo::effect {

namespace {

/// The end of a list of options that have values. In a list to be filled the key alone tells.
bool isLast(const LV2_Options_Option& option) {
    return option.key == 0 && option.value == nullptr;
}

}  // namespace

ContextName::ContextName(const LV2_Options_Option* options, const Uris& uris) : uris_(uris) {
    if (options != nullptr) {
        // The status is ignored: other options are not for this plug-in.
        set(options);
    }
}

std::uint32_t ContextName::get(LV2_Options_Option* options) const {
    std::uint32_t status = LV2_OPTIONS_SUCCESS;
    for (auto* option = options; option->key != 0; ++option) {
        if (option->context != LV2_OPTIONS_INSTANCE) {
            status |= LV2_OPTIONS_ERR_BAD_SUBJECT;
        } else if (option->key != uris_.contextName) {
            status |= LV2_OPTIONS_ERR_BAD_KEY;
        } else {
            option->type = uris_.atomString;
            option->size = static_cast<std::uint32_t>(text_.size() + 1);
            option->value = text_.c_str();
        }
    }
    return status;
}

std::uint32_t ContextName::set(const LV2_Options_Option* options) {
    std::uint32_t status = LV2_OPTIONS_SUCCESS;
    for (const auto* option = options; !isLast(*option); ++option) {
        status |= setOne(*option);
    }
    return status;
}

std::uint32_t ContextName::setOne(const LV2_Options_Option& option) {
    if (option.context != LV2_OPTIONS_INSTANCE) {
        return LV2_OPTIONS_ERR_BAD_SUBJECT;
    }
    if (option.key == 0 || option.key != uris_.contextName) {
        return LV2_OPTIONS_ERR_BAD_KEY;
    }
    if (option.type != uris_.atomString || option.value == nullptr) {
        return LV2_OPTIONS_ERR_BAD_VALUE;
    }
    const auto* text = static_cast<const char*>(option.value);
    text_.assign(text, strnlen(text, option.size));
    return LV2_OPTIONS_SUCCESS;
}

}  // namespace orvalo::effect
