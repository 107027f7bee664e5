#include "platform/audio/output/AlsaDevice.h"

#include <RtAudio.h>
#include <alsa/asoundlib.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/audio/output/LibraryMessages.h"
#include "platform/audio/output/RtAudioStream.h"
#include "platform/audio/output/Turns.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

/// Never destroyed: a driver that hangs can keep a call for longer than the program runs.
Turns& rtAudio() {
    static auto* const turns = new Turns;
    return *turns;
}

using Pcm = std::unique_ptr<snd_pcm_t, int (*)(snd_pcm_t*)>;

/// The rate nearest to the usual one that the device has among RtAudio's.
double offeredRate(snd_pcm_t* pcm, snd_pcm_hw_params_t* parameters) {
    for (const unsigned int rate : {48000U, 44100U, 96000U, 88200U, 32000U, 192000U}) {
        if (snd_pcm_hw_params_test_rate(pcm, parameters, rate, 0) == 0) {
            return rate;
        }
    }
    return 0;
}

}  // namespace

std::optional<OutputFacts> AlsaDevice::look() {
    takeLibraryMessages();
    snd_pcm_t* opened = nullptr;
    const int refusal = snd_pcm_open(&opened, "default", SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK);
    if (refusal < 0) {
        absence_ =
            std::string("ALSA's default device does not open (") + snd_strerror(refusal) + ")";
        return std::nullopt;
    }
    const Pcm pcm(opened, snd_pcm_close);
    snd_pcm_hw_params_t* parameters = nullptr;
    snd_pcm_hw_params_alloca(&parameters);
    unsigned int channels = 0;
    OutputFacts facts;
    if (snd_pcm_hw_params_any(pcm.get(), parameters) < 0 ||
        snd_pcm_hw_params_get_channels_max(parameters, &channels) < 0 || channels == 0 ||
        (facts.format.sampleRate = offeredRate(pcm.get(), parameters)) == 0) {
        absence_ = "ALSA's default device has no format that fits";
        return std::nullopt;
    }
    facts.format.channelCount = std::min(channels, 2U);
    facts.deviceName = "default";
    return facts;
}

std::unique_ptr<OutputStream> AlsaDevice::open(const OutputFacts& facts,
                                               std::shared_ptr<RenderGate> gate) {
    RtAudioStream::Options options;
    options.flags = RTAUDIO_ALSA_USE_DEFAULT;
    return std::make_unique<RtAudioStream>(std::make_shared<RtApiAlsa>(), rtAudio(), options, facts,
                                           std::move(gate));
}

}  // namespace orvalo
