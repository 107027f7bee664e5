#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "tests/testing/ServerProcess.h"

namespace orvalo::testing {

/// Private PipeWire daemons in a folder: pipewire, pipewire-pulse and WirePlumber. Their only
/// device is the virtual sink "quiet". The destructor ends them.
class PipeWireDaemons {
  public:
    struct Sink {
        std::string rate = "48000";
        std::string channels = "FL FR";
        /// Further ones, as PipeWire writes them.
        std::string properties = "media.class = Audio/Sink node.description = Quiet";
    };

    /// Makes the folder that of the user and its servers, in this process and those that it starts.
    explicit PipeWireDaemons(std::filesystem::path folder);

    /// Starts the daemons without a session manager, and waits for their sockets.
    void start(const Sink& sink);
    /// Starts WirePlumber, without its search for the machine's devices, and waits until the sink
    /// is ready.
    void startSessionManager(bool (*isReady)() = isDefaultSink);
    void end();
    /// Ends them as a crash would.
    void kill();

    /// The sink that plays unless another is asked for; or why there is none.
    static std::string defaultSink();
    /// Whether that is "quiet".
    static bool isDefaultSink();
    /// Whether "quiet" has ports to play to.
    static bool hasPorts();

  private:
    void writeFile(const std::string& name, const std::string& text) const;
    void removeSockets() const;

    const std::filesystem::path folder_;
    std::optional<ServerProcess> daemon_;
    std::optional<ServerProcess> pulse_;
    std::optional<ServerProcess> manager_;
};

}  // namespace orvalo::testing
