#include "platform/audio/lv2/LV2DataChecks.h"

#include "platform/audio/lv2/LV2Bundle.h"

namespace orvalo {

std::vector<std::string> urisOf(const LilvNodes* nodes) {
    std::vector<std::string> result;
    LILV_FOREACH(nodes, i, nodes) {
        const auto* node = lilv_nodes_get(nodes, i);
        if (lilv_node_is_uri(node)) {
            result.emplace_back(lilv_node_as_uri(node));
        }
    }
    return result;
}

std::string pathOf(const LilvNode* uri) {
    char* text = uri == nullptr ? nullptr : lilv_node_get_path(uri, nullptr);
    std::string result(text == nullptr ? "" : text);
    lilv_free(text);
    return result;
}

void requireSoundFiles(const LilvNodes* files, const std::string& plugin, LV2MakeError makeError) {
    for (const auto& file : urisOf(files)) {
        if (const auto error = turtleFileError(file); !error.empty()) {
            std::string reason = "its data file <";
            reason.append(file).append("> is not sound (").append(error).append(")");
            throw makeError(LV2ErrorCode::badData, plugin, reason);
        }
    }
}

void requireOffered(const LilvNodes* required, const std::string& kind,
                    bool (*isOffered)(const std::string&), const std::string& plugin,
                    LV2MakeError makeError) {
    for (const auto& uri : urisOf(required)) {
        if (!isOffered(uri)) {
            std::string reason = "it requires the " + kind + " <";
            reason.append(uri).append(">, which is not offered");
            throw makeError(LV2ErrorCode::unsupportedFeature, plugin, reason);
        }
    }
}

}  // namespace orvalo
