#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/platform/audio/lv2/BlockRunner.h"

namespace orvalo::testing {

/// Renders an installed plug-in through lilv alone, as the reference for a unit's output. Control
/// inputs have their defaults where `controls` has no other value; event inputs stay empty. Offers
/// URIDs, options and a worker that does requests in the scheduling call.
Channels renderDirectly(const std::string& uri, double sampleRate,
                        const std::map<std::string, float>& controls, const Channels& input,
                        const std::vector<std::uint32_t>& blockLengths, std::size_t frameCount);

}  // namespace orvalo::testing
