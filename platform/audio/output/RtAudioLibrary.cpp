#include "platform/audio/output/RtAudioLibrary.h"

#include <numeric>

#include "platform/audio/output/OutputDevice.h"

namespace orvalo::rtaudio {

#ifdef RTAUDIO_VERSION_MAJOR  // RtAudio 6

std::unique_ptr<RtAudio> make(RtAudio::Api api, Report report) {
    // Warnings stay on: they report the death of a server.
    return std::make_unique<RtAudio>(api, report);
}

std::vector<unsigned int> deviceIds(RtAudio& library) {
    return library.getDeviceIds();
}

unsigned int openAndStart(RtAudio& library, StreamRequest request, Report /*report*/) {
    if (library.openStream(&request.parameters, nullptr, RTAUDIO_FLOAT32, request.sampleRate,
                           &request.frameCount, request.callback, request.userData,
                           &request.options) != RTAUDIO_NO_ERROR ||
        library.startStream() != RTAUDIO_NO_ERROR) {
        throw outputError(library.getErrorText());
    }
    return request.frameCount;
}

#else  // RtAudio 5

std::unique_ptr<RtAudio> make(RtAudio::Api api, Report /*report*/) {
    auto library = std::make_unique<RtAudio>(api);
    // An open stream reports its warnings anyway; earlier ones would be printed on standard error.
    library->showWarnings(false);
    return library;
}

std::vector<unsigned int> deviceIds(RtAudio& library) {
    std::vector<unsigned int> ids(library.getDeviceCount());
    std::iota(ids.begin(), ids.end(), 0U);
    return ids;
}

unsigned int openAndStart(RtAudio& library, StreamRequest request, Report report) {
    try {
        library.openStream(&request.parameters, nullptr, RTAUDIO_FLOAT32, request.sampleRate,
                           &request.frameCount, request.callback, request.userData,
                           &request.options, report);
        library.startStream();
    } catch (const RtAudioError& error) {
        throw outputError(error.what());
    }
    return request.frameCount;
}

#endif

}  // namespace orvalo::rtaudio
