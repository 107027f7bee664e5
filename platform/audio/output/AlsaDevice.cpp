#include "platform/audio/output/AlsaDevice.h"

#include <alsa/asoundlib.h>
#include <glib.h>

#include <algorithm>
#include <cstdarg>
#include <utility>

#include "platform/audio/output/RtAudioStream.h"

namespace orvalo {

namespace {

G_GNUC_PRINTF(5, 6)
void logToGLib(const char* /*file*/, int /*line*/, const char* function, int /*code*/,
               const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    gchar* message = g_strdup_vprintf(format, arguments);
    va_end(arguments);
    g_debug("ALSA: %s: %s", function, message);
    g_free(message);
}

/// The first usual rate that the device has; 0 when it has none.
double offeredRate(snd_pcm_t* pcm, snd_pcm_hw_params_t* parameters) {
    for (const unsigned int rate : {48000U, 44100U, 96000U, 88200U, 32000U, 192000U}) {
        if (snd_pcm_hw_params_test_rate(pcm, parameters, rate, 0) == 0) {
            return rate;
        }
    }
    return 0;
}

}  // namespace

OutputFacts AlsaDevice::probe() {
    snd_lib_error_set_handler(logToGLib);
    snd_pcm_t* opened = nullptr;
    const int refusal = snd_pcm_open(&opened, "default", SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK);
    if (refusal < 0) {
        throw outputError(std::string("ALSA's default device does not open (") +
                          snd_strerror(refusal) + ")");
    }
    const std::unique_ptr<snd_pcm_t, int (*)(snd_pcm_t*)> pcm(opened, snd_pcm_close);
    snd_pcm_hw_params_t* parameters = nullptr;
    snd_pcm_hw_params_alloca(&parameters);
    unsigned int channels = 0;
    OutputFacts facts;
    if (snd_pcm_hw_params_any(pcm.get(), parameters) < 0 ||
        snd_pcm_hw_params_get_channels_max(parameters, &channels) < 0 || channels == 0 ||
        (facts.format.sampleRate = offeredRate(pcm.get(), parameters)) == 0) {
        throw outputError("ALSA's default device has no format that fits");
    }
    facts.format.channelCount = std::min(channels, 2U);
    facts.deviceName = "default";
    return facts;
}

std::unique_ptr<OutputStream> AlsaDevice::open(const OutputFacts& facts,
                                               std::shared_ptr<StreamFeed> feed) {
    return std::make_unique<RtAudioStream>(RtAudio::LINUX_ALSA, facts, std::move(feed));
}

}  // namespace orvalo
