#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/platform/audio/lv2/BlockRunner.h"

namespace orvalo::testing {

/// Runs an installed plug-in through lilv alone, with nothing of this host's but the same order of
/// blocks: what a unit's output is compared with. Control inputs have their defaults where
/// `controls` names no other value; event inputs stay empty. The plug-in must get along with URIDs,
/// options and a worker that does its jobs in the scheduling call.
Channels renderDirectly(const std::string& uri, double sampleRate,
                        const std::map<std::string, float>& controls, const Channels& input,
                        const std::vector<std::uint32_t>& blockLengths, std::size_t frameCount);

}  // namespace orvalo::testing
