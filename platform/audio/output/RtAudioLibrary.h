#pragma once

#include <RtAudio.h>

#include <memory>
#include <string>
#include <vector>

namespace orvalo::rtaudio {

// RtAudio 5 throws errors and numbers its devices from 0; RtAudio 6 returns errors and gives
// devices identifiers. These functions hide the difference.

#ifdef RTAUDIO_VERSION_MAJOR  // Since RtAudio 6.
using ErrorType = RtAudioErrorType;
#else
using ErrorType = RtAudioError::Type;
#endif

/// Receives RtAudio's errors and warnings, on the thread where they occur.
using Report = void (*)(ErrorType type, const std::string& text);

/// Creates the library for one sound system.
std::unique_ptr<RtAudio> make(RtAudio::Api api, Report report);

/// The present devices, for StreamParameters::deviceId.
std::vector<unsigned int> deviceIds(RtAudio& library);

/// The arguments of RtAudio::openStream().
struct StreamRequest {
    RtAudio::StreamParameters parameters;
    RtAudio::StreamOptions options;
    unsigned int sampleRate = 0;
    unsigned int frameCount = 0;
    RtAudioCallback callback = nullptr;
    void* userData = nullptr;
};

/// Opens and starts an output stream of 32-bit floats; returns the frames of its quantum. Throws
/// NSError with RtAudio's text.
unsigned int openAndStart(RtAudio& library, StreamRequest request, Report report);

}  // namespace orvalo::rtaudio
