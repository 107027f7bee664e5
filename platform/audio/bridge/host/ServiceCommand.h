#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/ControlRange.h"
#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/SharedAudio.h"

namespace orvalo {

/// What every process of one effect is made from.
struct ServiceOrder {
    std::filesystem::path program;  ///< Of the service.
    std::string uri;
    std::vector<std::string> bundles;
    std::string stateFolder;
    SharedAudio::Layout layout;
    std::vector<ControlRange> ranges;
};

/// What became of a request.
struct ServiceAnswer {
    enum class Kind {
        done,
        refused,     ///< The process said why not: error.
        died,        ///< The process died before it answered.
        remembered,  ///< There is no process any more.
    };

    Kind kind = Kind::done;
    std::string error;
};

/// Something to say to the process of an effect.
struct ServiceCommand {
    bridge::HostMessage message;
    /// The number of the process that it is meant for; 0 for whichever is there.
    std::uint32_t process = 0;
    /// Called once at the most, on the supervisor's thread; may be empty.
    std::function<void(const ServiceAnswer&)> completion;
};

}  // namespace orvalo
