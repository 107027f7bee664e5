#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/EffectPlaces.h"
#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/SharedAudio.h"
#include "platform/audio/lv2/LV2Port.h"

namespace orvalo {

/// What every service of one effect is started with.
struct ServiceOrder {
    std::filesystem::path program;  ///< The path of effect-service.
    std::string uri;
    EffectPlaces places;
    std::filesystem::path cache{};  ///< One of the writable places; empty for none.
    SharedAudio::Layout layout;
    std::vector<LV2Port> ports;
    std::uint32_t quantum = 0;   ///< ExpectedRendering::frameCount.
    bool writesPresets = false;  ///< Whether the host writes the presets that the UI saves.
};

/// The outcome of a request.
struct ServiceAnswer {
    enum class Kind {
        done,
        refused,    ///< The service answered with an error.
        died,       ///< The service ended before it answered.
        noService,  ///< The service was given up and is not restarted.
    };

    Kind kind = Kind::done;
    std::string error;  ///< Of refused.
};

/// A message for the service of an effect.
struct ServiceCommand {
    bridge::HostMessage message;
    /// The number of the service that it is for, from 1; 0 for any.
    std::uint32_t process = 0;
    /// Called at most once, on the supervisor's thread; may be empty.
    std::function<void(const ServiceAnswer&)> completion;
};

}  // namespace orvalo
