#include "platform/audio/lv2/LV2Options.h"

#include <lv2/buf-size/buf-size.h>
#include <lv2/parameters/parameters.h>

#include <algorithm>
#include <string_view>

#include "platform/audio/lv2/URIDMap.h"
#include "platform/audio/signal/AudioBlock.h"

namespace orvalo {

namespace {

template <typename Value>
LV2_Options_Option option(LV2_URID key, LV2_URID type, const Value& value) {
    return {LV2_OPTIONS_INSTANCE, 0, key, sizeof(value), type, &value};
}

}  // namespace

LV2Options::LV2Options(double sampleRate, std::uint32_t sequenceSize, std::uint32_t quantum,
                       std::string name)
    : sampleRate_(static_cast<float>(sampleRate)),
      longestBlock_(kMaximumFramesToRender),
      sequenceSize_(static_cast<std::int32_t>(sequenceSize)),
      nominalBlock_(static_cast<std::int32_t>(quantum)),
      contextName_(std::move(name)),
      options_{} {
    const auto& urids = LV2URIDs::shared();
    options_ = {option(urids.sampleRate, urids.atomFloat, sampleRate_),
                option(urids.minBlockLength, urids.atomInt, shortestBlock_),
                option(urids.maxBlockLength, urids.atomInt, longestBlock_),
                option(urids.sequenceSize, urids.atomInt, sequenceSize_),
                contextName(contextName_),
                quantum == 0 ? LV2_Options_Option{}
                             : option(urids.nominalBlockLength, urids.atomInt, nominalBlock_),
                {}};
}

bool LV2Options::isOffered(const std::string& uri) {
    static constexpr std::array<std::string_view, 5> offered{
        LV2_PARAMETERS__sampleRate, LV2_BUF_SIZE__minBlockLength, LV2_BUF_SIZE__maxBlockLength,
        LV2_BUF_SIZE__sequenceSize, kContextNameURI};
    return std::find(offered.begin(), offered.end(), uri) != offered.end();
}

LV2_Options_Option LV2Options::contextName(const std::string& name) {
    const auto& urids = LV2URIDs::shared();
    return {LV2_OPTIONS_INSTANCE, 0,
            urids.contextName,    static_cast<std::uint32_t>(name.size() + 1),
            urids.atomString,     name.c_str()};
}

}  // namespace orvalo
