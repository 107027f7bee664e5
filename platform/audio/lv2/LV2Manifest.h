#pragma once

#include <string>
#include <vector>

#include "platform/audio/lv2/LV2Bundle.h"

namespace orvalo {

/// The vocabulary with which manifests state component codes: type, subtype and manufacturer (four
/// ASCII characters each), flags (an integer, 0 when absent) and name (text).
inline constexpr const char* kComponentVocabulary = "urn:tessaly:audio-component#";

/// What one manifest says of a plug-in in the component vocabulary.
struct LV2ComponentStatement {
    std::string plugin;     ///< The URI that is spoken of.
    std::string predicate;  ///< What follows the vocabulary's URI.
    std::string value;      ///< The literal's text.
    bool isLiteral = true;
};

/// Whether a manifest can be read to its end. Otherwise one warning names it and the line.
bool isReadable(const LV2Bundle& bundle);

/// The manifest's component statements, in its order. The manifest must be readable.
std::vector<LV2ComponentStatement> componentStatements(const LV2Bundle& bundle);

/// Whether the manifest can speak of that plug-in at all: cheap, and true too often. It is false
/// too often only for prefixes that end inside the last segment of the plug-in's URI.
bool mayMention(const LV2Bundle& bundle, const std::string& pluginURI);

/// Whether the manifest can hold component statements: cheap, and true too often.
bool mayStateComponents(const LV2Bundle& bundle);

}  // namespace orvalo
