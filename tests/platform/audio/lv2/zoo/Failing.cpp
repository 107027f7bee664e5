// A plug-in whose instantiation always fails.

#include <lv2/core/lv2.h>

#include <cstdint>

namespace {

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/,
                       const char* /*bundle*/, const LV2_Feature* const* /*features*/) {
    return nullptr;
}

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static const LV2_Descriptor descriptor{"urn:orvalo:zoo:failing",
                                           instantiate,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr};
    return index == 0 ? &descriptor : nullptr;
}
