#include "platform/audio/output/PulseDevice.h"

#include <RtAudio.h>

#include <algorithm>
#include <utility>

#include "platform/audio/output/PulseLook.h"
#include "platform/audio/output/RtAudioStream.h"
#include "platform/audio/output/Turns.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

constexpr std::chrono::milliseconds kServerPatience{500};

/// Never destroyed: a server that hangs can keep a call for longer than the program runs.
Turns& rtAudio() {
    static auto* const turns = new Turns;
    return *turns;
}

/// The rate to ask for: the sink's own where RtAudio's PulseAudio streams offer it.
double offeredRate(std::uint32_t sinkRate) {
    constexpr std::array<std::uint32_t, 7> kOffered{8000, 16000, 22050, 32000, 44100, 48000, 96000};
    return std::find(kOffered.begin(), kOffered.end(), sinkRate) != kOffered.end() ? sinkRate
                                                                                   : 48000;
}

/// RtAudio's number of the default sink.
unsigned int defaultDeviceId(RtApiPulse& api) {
    const auto count = api.getDeviceCount();
    for (unsigned int id = 0; id < count; ++id) {
        if (api.getDeviceInfo(id).isDefaultOutput) {
            return id;
        }
    }
    throw NSError("AudioOutputErrorDomain", 4, "the PulseAudio server has lost its sink");
}

}  // namespace

std::optional<OutputFacts> PulseDevice::look() {
    PulseLook server(kServerPatience);
    if (!server.isConnected()) {
        absence_ = "no PulseAudio server is running";
        return std::nullopt;
    }
    const auto sink = server.defaultSink();
    if (!sink) {
        absence_ = "the PulseAudio server has no sink";
        return std::nullopt;
    }
    OutputFacts facts;
    facts.format.sampleRate = offeredRate(sink->sampleRate);
    facts.format.channelCount = std::min(sink->channelCount, 2U);
    facts.deviceName = sink->name;
    return facts;
}

std::unique_ptr<OutputStream> PulseDevice::open(const OutputFacts& facts,
                                                std::shared_ptr<RenderGate> gate) {
    auto api = std::make_shared<RtApiPulse>();
    RtAudioStream::Options options;
    options.deviceId = [api] { return defaultDeviceId(*api); };
    return std::make_unique<RtAudioStream>(std::move(api), rtAudio(), options, facts,
                                           std::move(gate));
}

}  // namespace orvalo
