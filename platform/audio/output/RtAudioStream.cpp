#include "platform/audio/output/RtAudioStream.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <string>
#include <utility>

#include "platform/audio/output/LibraryCalls.h"
#include "platform/audio/output/RtAudioLibrary.h"

namespace orvalo {

namespace {

constexpr std::chrono::milliseconds kOpeningLimit{2000};
constexpr std::chrono::milliseconds kClosingLimit{500};
// The callback's return values.
constexpr int kContinue = 0;
constexpr int kAbort = 2;
/// Buffers between the application and the device, of one quantum each.
constexpr unsigned int kBufferCount = 3;

/// The calls into one system's part of RtAudio.
LibraryCalls& callsTo(RtAudio::Api api) {
    // Never destroyed: a server that hangs can keep a call for longer than the program runs.
    static auto* const alsa = new LibraryCalls;
    static auto* const pulse = new LibraryCalls;
    return api == RtAudio::LINUX_ALSA ? *alsa : *pulse;
}

unsigned int defaultDevice(RtAudio& library) {
    const auto ids = rtaudio::deviceIds(library);
    if (ids.empty()) {
        throw outputError("RtAudio finds no device");
    }
    // RTAUDIO_ALSA_USE_DEFAULT overrides any valid identifier, and getDeviceInfo() would open each
    // of ALSA's devices.
    const auto found = library.getCurrentApi() == RtAudio::LINUX_ALSA
                           ? ids.begin()
                           : std::find_if(ids.begin(), ids.end(), [&](auto id) {
                                 return library.getDeviceInfo(id).isDefaultOutput;
                             });
    if (found == ids.end()) {
        throw outputError("the sound server has lost its sink");
    }
    return *found;
}

}  // namespace

/// The stream, its library and its callbacks; lives until the stream is closed.
struct RtAudioStream::Session {
    std::shared_ptr<StreamFeed> feed;
    RtAudio::Api api = RtAudio::UNSPECIFIED;
    std::uint32_t channelCount = 0;
    std::unique_ptr<RtAudio> library;

    /// The session that the calling thread renders. RtAudio 5 reports errors without a user
    /// argument, but on the render thread.
    static thread_local Session* current;

    /// Returns the frames of the quantum. Leaves nothing open when it throws.
    unsigned int open(const OutputFacts& facts);

    static int render(void* output, void* input, unsigned int frameCount, double time,
                      RtAudioStreamStatus status, void* session);
    static void report(rtaudio::ErrorType type, const std::string& text);
};

thread_local RtAudioStream::Session* RtAudioStream::Session::current = nullptr;

unsigned int RtAudioStream::Session::open(const OutputFacts& facts) {
    try {
        library = rtaudio::make(api, report);
        rtaudio::StreamRequest request;
        request.parameters.deviceId = defaultDevice(*library);
        request.parameters.nChannels = channelCount;
        request.options.flags = RTAUDIO_NONINTERLEAVED | RTAUDIO_ALSA_USE_DEFAULT;
        request.options.numberOfBuffers = kBufferCount;
        request.options.streamName = "Orvalo";
        request.sampleRate = static_cast<unsigned int>(std::lround(facts.format.sampleRate));
        request.frameCount = facts.frameCount;
        request.callback = render;
        request.userData = this;
        const auto frameCount = rtaudio::openAndStart(*library, request, report);
        if (!library->isStreamRunning()) {
            throw outputError("the stream does not start");
        }
        return frameCount;
    } catch (const NSError&) {
        library.reset();
        throw;
    }
}

int RtAudioStream::Session::render(void* output, void* /*input*/, unsigned int frameCount,
                                   double /*time*/, RtAudioStreamStatus status, void* session) {
    auto& self = *static_cast<Session*>(session);
    current = &self;
    if ((status & RTAUDIO_OUTPUT_UNDERFLOW) != 0) {
        self.feed->countXruns(1);
    }
    // Without a server RtAudio would call without a pause.
    if (self.feed->hasEnded()) {
        return kAbort;
    }
    std::array<float*, kMaximumChannels> channels{};
    for (std::uint32_t channel = 0; channel < self.channelCount; ++channel) {
        channels[channel] = static_cast<float*>(output) + std::size_t{channel} * frameCount;
    }
    self.feed->render({channels.data(), self.channelCount, frameCount});
    return kContinue;
}

void RtAudioStream::Session::report(rtaudio::ErrorType /*type*/, const std::string& text) {
    g_debug("RtAudio: %s", text.c_str());
    // After an underrun the stream continues; only the text distinguishes it from other warnings.
    if (current != nullptr && text.find("underrun.") == std::string::npos) {
        current->feed->markEnded();
    }
}

RtAudioStream::RtAudioStream(RtAudio::Api api, const OutputFacts& facts,
                             std::shared_ptr<StreamFeed> feed)
    : facts_(facts),
      session_(std::make_shared<Session>(
          Session{std::move(feed), api, facts.format.channelCount, nullptr})) {
    // An opening that hung before still waits: another would wait behind it, with its thread.
    if (callsTo(api).isBusy()) {
        throw outputError("the sound server does not answer");
    }
    const auto frameCount = std::make_shared<unsigned int>(0);
    if (!callsTo(api).finishWithin(kOpeningLimit, [session = session_, facts, frameCount] {
            *frameCount = session->open(facts);
        })) {
        throw outputError("the sound server does not answer");
    }
    facts_.frameCount = *frameCount;
}

RtAudioStream::~RtAudioStream() {
    // Closes without stopping: stopping waits for a callback, without end when the device has gone.
    const auto close = [session = session_] { session->library.reset(); };
    if (!callsTo(session_->api).finishWithin(kClosingLimit, close)) {
        g_debug("RtAudio does not close its stream; the stream is left open.");
    }
}

}  // namespace orvalo
