#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <pulse/pulseaudio.h>

namespace orvalo {

/// One short visit to the PulseAudio server that runs already: starts none, and leaves after a
/// deadline. One thread.
class PulseLook {
  public:
    struct Sink {
        std::string name;
        std::string description;
        std::uint32_t sampleRate = 0;
        std::uint32_t channelCount = 0;
    };

    explicit PulseLook(std::chrono::milliseconds patience);
    ~PulseLook();
    PulseLook(const PulseLook&) = delete;
    PulseLook& operator=(const PulseLook&) = delete;

    /// Whether a server has answered.
    bool isConnected() const { return connected_; }
    /// The sink that streams go to unless they say otherwise.
    std::optional<Sink> defaultSink();

  private:
    bool turn();
    bool finish(pa_operation* operation);

    const std::chrono::steady_clock::time_point deadline_;
    const std::unique_ptr<pa_mainloop, void (*)(pa_mainloop*)> loop_;
    const std::unique_ptr<pa_context, void (*)(pa_context*)> context_;
    bool connected_ = false;
};

}  // namespace orvalo
