#include "programs/effect-service/PackedState.h"

#include <span>

#include "platform/audio/bridge/wire/BridgeArchive.h"
#include "platform/audio/lv2/URIDMap.h"

namespace orvalo {

namespace {

struct PackedProperty {
    std::uint32_t key = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    std::string body;

    template <typename Archive>
    void fields(Archive& archive) {
        archive(key, type, flags, body);
    }
    template <typename Archive>
    void fields(Archive& archive) const {
        archive(key, type, flags, body);
    }
};

}  // namespace

std::string packState(const LV2StateProperties& properties) {
    std::vector<PackedProperty> packed;
    packed.reserve(properties.size());
    for (const auto& property : properties) {
        packed.push_back({property.key, property.type, property.flags, property.body});
    }
    BridgeWriter writer;
    writer(URIDMap::shared().uris(), packed);
    const auto& bytes = writer.bytes();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::optional<LV2StateProperties> unpackState(const std::string& state) {
    BridgeReader reader(std::as_bytes(std::span(state)));
    std::vector<std::string> uris;
    std::vector<PackedProperty> packed;
    reader(uris, packed);
    if (!reader.isWhole() || !URIDMap::shared().adopt(uris)) {
        return std::nullopt;
    }
    LV2StateProperties properties;
    properties.reserve(packed.size());
    for (auto& property : packed) {
        properties.push_back(
            {property.key, property.type, property.flags, std::move(property.body)});
    }
    return properties;
}

}  // namespace orvalo
