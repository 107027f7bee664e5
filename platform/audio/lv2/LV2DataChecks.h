#pragma once

#include <lilv/lilv.h>

#include <string>
#include <vector>

#include "platform/audio/lv2/LV2Error.h"

namespace orvalo {

// What a plug-in's data and its UI's data have in common. Inside an LV2World::Access.

/// The URIs among the nodes.
std::vector<std::string> urisOf(const LilvNodes* nodes);

/// The path of a file by its URI; empty for a null node or another URI.
std::string pathOf(const LilvNode* uri);

/// Throws LV2ErrorCode::badData unless the files are sound. Call before lilv's next query, which
/// reads them.
void requireSoundFiles(const LilvNodes* files, const std::string& plugin, LV2MakeError makeError);

/// Throws LV2ErrorCode::unsupportedFeature unless the host offers all features or options that are
/// required. kind: "feature" or "option".
void requireOffered(const LilvNodes* required, const std::string& kind,
                    bool (*isOffered)(const std::string&), const std::string& plugin,
                    LV2MakeError makeError);

}  // namespace orvalo
