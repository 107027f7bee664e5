#include "platform/audio/output/RtAudioStream.h"

#include <glib.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <string>
#include <utility>

#include "platform/audio/output/RealTimePriority.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

constexpr auto kErrorDomain = "AudioOutputErrorDomain";
constexpr std::chrono::milliseconds kOpeningPatience{2000};
constexpr std::chrono::milliseconds kClosingPatience{500};
/// What the callback answers to go on, and to have RtAudio abort the stream.
constexpr int kGoOn = 0;
constexpr int kAbort = 2;
/// Buffers between us and the device, of one quantum each, where the number is ours to choose.
constexpr unsigned int kBufferCount = 3;

}  // namespace

/// What the render thread uses; lives until the stream is closed, by whomever.
struct RtAudioStream::Session {
    std::shared_ptr<RtApi> api;
    std::shared_ptr<RenderGate> gate;
    std::uint32_t channelCount = 0;
    bool ownsRenderThread = true;
    bool renderThreadIsReady = false;  ///< The render thread's own.

    /// The session that the calling thread renders for. RtAudio's error callback has no argument
    /// for the user, but it comes on the render thread.
    static thread_local Session* current;

    static int render(void* output, void* input, unsigned int frameCount, double time,
                      RtAudioStreamStatus status, void* session);
    static void report(RtAudioError::Type type, const std::string& text);
};

thread_local RtAudioStream::Session* RtAudioStream::Session::current = nullptr;

int RtAudioStream::Session::render(void* output, void* /*input*/, unsigned int frameCount,
                                   double /*time*/, RtAudioStreamStatus status, void* session) {
    auto& self = *static_cast<Session*>(session);
    if (!self.renderThreadIsReady) {
        self.renderThreadIsReady = true;
        current = &self;
        if (self.ownsRenderThread) {
            becomeRenderThread("orvalo-render");
        }
    }
    if ((status & RTAUDIO_OUTPUT_UNDERFLOW) != 0) {
        self.gate->countXruns(1);
    }
    // Without a device RtAudio's own threads would call as fast as they can.
    if (self.ownsRenderThread && self.gate->hasEnded()) {
        return kAbort;
    }
    std::array<float*, kMaximumChannels> channels{};
    for (std::uint32_t channel = 0; channel < self.channelCount; ++channel) {
        channels[channel] = static_cast<float*>(output) + std::size_t{channel} * frameCount;
    }
    self.gate->render({channels.data(), self.channelCount, frameCount});
    return kGoOn;
}

void RtAudioStream::Session::report(RtAudioError::Type /*type*/, const std::string& text) {
    g_debug("RtAudio: %s", text.c_str());
    // An underrun is a warning like the others but for its text, and the stream goes on after it.
    if (current != nullptr && text.find("underrun.") == std::string::npos) {
        current->gate->end();
    }
}

RtAudioStream::RtAudioStream(std::shared_ptr<RtApi> api, Turns& library, const Options& options,
                             const OutputFacts& facts, std::shared_ptr<RenderGate> gate)
    : library_(library),
      facts_(facts),
      session_(std::make_shared<Session>(Session{
          std::move(api), std::move(gate), facts.format.channelCount, options.ownsRenderThread})) {
    const auto frameCount = std::make_shared<std::atomic<unsigned int>>(facts.frameCount);
    const auto rate = static_cast<unsigned int>(std::lround(facts.format.sampleRate));
    const auto openAndStart = [session = session_, options, rate, frameCount] {
        session->api->showWarnings(false);
        RtAudio::StreamParameters parameters;
        parameters.deviceId = options.deviceId();
        parameters.nChannels = session->channelCount;
        RtAudio::StreamOptions streamOptions;
        streamOptions.flags = RTAUDIO_NONINTERLEAVED | options.flags;
        streamOptions.numberOfBuffers = kBufferCount;
        streamOptions.streamName = "Orvalo";
        unsigned int frames = *frameCount;
        session->api->openStream(&parameters, nullptr, RTAUDIO_FLOAT32, rate, &frames,
                                 Session::render, session.get(), &streamOptions, Session::report);
        *frameCount = frames;
        if (options.opened) {
            options.opened(*session->gate);
        }
        session->api->startStream();
    };
    try {
        if (!library_.finishWithin(kOpeningPatience, openAndStart)) {
            throw NSError(kErrorDomain, 2, "the sound server does not answer");
        }
    } catch (const RtAudioError& error) {
        throw NSError(kErrorDomain, 3, error.what());
    }
    if (!session_->api->isStreamRunning()) {
        throw NSError(kErrorDomain, 3, "the stream does not start");
    }
    facts_.frameCount = *frameCount;
}

RtAudioStream::~RtAudioStream() {
    // Closing without stopping before: stopping waits for a callback, without end when the device
    // has gone, and plays what is buffered.
    const auto close = [session = session_] {
        // Its destruction closes the stream.
        session->api.reset();
    };
    if (!library_.finishWithin(kClosingPatience, close)) {
        g_debug("RtAudio does not close its stream; it is left behind.");
    }
}

}  // namespace orvalo
