#include "Audio Engine/AUEnginePlayer.h"

#include <random>
#include <string>
#include <utility>

#include "platform/audio/engine/AVAudioMixerNode.h"
#include "platform/audio/engine/AVAudioOutputNode.h"
#include "platform/audio/engine/AVAudioSession.h"
#include "platform/foundation/Checked.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/Print.h"
#include "support/Unwrapped.h"

namespace orvalo {

namespace {

constexpr std::int64_t kDemonstrationFiles = 80;

std::int64_t randomInteger(std::int64_t first, std::int64_t last) {
    thread_local std::mt19937_64 generator{std::random_device{}()};
    return std::uniform_int_distribution<std::int64_t>(first, last)(generator);
}

}  // namespace

AUEnginePlayer::AUEnginePlayer(std::shared_ptr<AVAudioEngine> audioEngine,
                               std::shared_ptr<Bundle> resourceBundle)
    : engine(std::move(audioEngine)), bundle(std::move(resourceBundle)) {
    engine->attach(player);
}

void AUEnginePlayer::finalize() {
    stop();
    disconnect();
}

void AUEnginePlayer::disconnect() {
    connect(nullptr, [] { print("AUEnginePlayer: Performed audio unit disconnection."); });
}

void AUEnginePlayer::load(const std::optional<URL>& url) {
    loopCount = 0;
    const auto& path = unwrapped(url).path();
    print("AUEnginePlayer: Audio file at '" + path + "' was selected for loading into the player.");
    stateChangeQueue->sync([this, &url] { fileURL = url; });
    try {
        const auto opened = AVAudioFile::forReading(*url);
        stateChangeQueue->sync([this, &opened] { file = opened; });
    } catch (const NSError& error) {
        print("AUEnginePlayer::ERROR: Could not create AVAudioFile instance for URL '" +
              description(url) + "'. error: " + error.description() + ".");
        return;
    }
    if (delegate) {
        delegate->onFileSelect(path);
    }
    stateChangeQueue->sync([this] { rewireForFile(); });
}

void AUEnginePlayer::rewireForFile() {
    if (isPlaying) {
        player->stop();
    }
    const auto mixer = engine->mainMixerNode();
    engine->disconnectNodeInput(mixer);
    if (activeAVAudioUnit) {
        print("AUEnginePlayer: Player was (temporarily) disconnecting from the main mixer.");
        engine->disconnectNodeInput(activeAVAudioUnit);
        print("AUEnginePlayer: Audio unit was (temporarily) disconnecting from the player.");
        engine->connect(player, activeAVAudioUnit, std::nullopt);
        print(std::to_string(file->processingFormat().channelCount));
        print("AUEnginePlayer: Audio unit re-connecting to the player.");
        engine->connect(activeAVAudioUnit, mixer, std::nullopt);
        print("AUEnginePlayer: Audio unit re-connectingto the main mixer.");
    } else {
        engine->connect(player, mixer, file->processingFormat());
        print("AUEnginePlayer: The player was connected to the mainMixerNode.");
    }
    if (isPlaying) {
        player->play();
    }
}

void AUEnginePlayer::randomizeFile() {
    const auto name = std::to_string(randomInteger(1, kDemonstrationFiles));
    const auto found = bundle->url(name, "m4a");
    stateChangeQueue->sync([this, &found] { fileURL = found; });
    if (!found) {
        // A missing file is a broken installation: unwrapped() ends the program.
        print("AUEnginePlayer::ERROR: The audio file '" + unwrapped(found).path() +
              "' was not found inside the resource folder for the app.");
        return;
    }
    load(found);
    print(found->path());
    engine->prepare();
}

void AUEnginePlayer::setSessionActive(bool active) {
    try {
        const auto session = AVAudioSession::sharedInstance();
        session->setCategory(AVAudioSessionCategory::playback, AVAudioSessionMode::default_,
                             AVAudioSessionCategoryOptions::none);
        session->setActive(active, AVAudioSessionSetActiveOptions::none);
        print("AUEnginePlayer: Audio session was set active.");
    } catch (const NSError& error) {
        fatalError(std::string("AUEnginePlayer::ERROR: Could not set audio session active ") +
                   (active ? "true" : "false") + ". system error: " + error.description());
    }
}

void AUEnginePlayer::start() {
    randomizeFile();
    stateChangeQueue->sync([this] {
        if (isPlaying) {
            return;
        }
        startPlayingInternal();
        DispatchQueue::main()->async([self = shared(this)] {
            print("AUEnginePlayer: Audio engine starting.");
            if (self->delegate) {
                self->delegate->onPlayerStateChanged(true);
            }
        });
    });
}

void AUEnginePlayer::startPlayingInternal() {
    setSessionActive(true);
    scheduleEffectLoop();
    const auto output = engine->outputNode();
    engine->connect(engine->mainMixerNode(), output, output->outputFormat(0));
    try {
        engine->start();
        player->play();
        isPlaying = true;
    } catch (const NSError& error) {
        isPlaying = false;
        fatalError("AUEnginePlayer::ERROR: Could not start audio engine. error: " +
                   error.description());
    }
}

void AUEnginePlayer::scheduleEffectLoop() {
    if (!file) {
        print("AUEnginePlayer::ERROR: `file` parameter must not be nil.");
        return;
    }
    player->scheduleFile(file, std::nullopt, [self = shared(this)]() mutable {
        // Moved on: destroying the last reference here would join the player's thread from itself.
        const auto queue = self->stateChangeQueue;
        queue->async([self = std::move(self)] { self->passEnded(); });
    });
}

void AUEnginePlayer::passEnded() {
    if (!isPlaying) {
        return;
    }
    DispatchQueue::main()->async([self = shared(this)] { self->countPass(); });
    scheduleEffectLoop();
}

void AUEnginePlayer::countPass() {
    if (delegate) {
        delegate->onLoop(loopCount);
    }
    const auto count = checkedAdd<std::int64_t>(loopCount, 1);
    loopCount = count;
    std::optional<URL> url;
    stateChangeQueue->sync([this, &url] { url = fileURL; });
    print("AUEnginePlayer: Current audio file '" + unwrapped(url).path() +
          "' looped: " + std::to_string(count) + ".");
}

void AUEnginePlayer::stop() {
    stateChangeQueue->sync([this] {
        if (!isPlaying) {
            return;
        }
        stopPlayingInternal();
        DispatchQueue::main()->async([self = shared(this)] {
            print("AUEnginePlayer: Audio engine stopping.");
            if (self->delegate) {
                self->delegate->onPlayerStateChanged(false);
            }
        });
    });
}

void AUEnginePlayer::stopPlayingInternal() {
    player->stop();
    engine->stop();
    isPlaying = false;
    setSessionActive(false);
}

bool AUEnginePlayer::toggle() {
    if (isPlaying) {
        stop();
    } else {
        start();
    }
    return isPlaying;
}

void AUEnginePlayer::connect(const std::shared_ptr<AVAudioUnit>& avAudioUnit,
                             const std::function<void()>& completion) {
    print(avAudioUnit ? "AUEnginePlayer: A new audio unit will be connected."
                      : "AUEnginePlayer::WARNING: Function connect() with argument 'nil' causes "
                        "disconnection.");
    // On the queue, so that a concurrent load() sees the effect either fully in the graph or not.
    stateChangeQueue->sync([this, &avAudioUnit] { rewire(avAudioUnit); });
    completion();
    if (!avAudioUnit) {
        print("AUEnginePlayer: The audio unit was set to 'nil'.");
    }
}

void AUEnginePlayer::rewire(const std::shared_ptr<AVAudioUnit>& avAudioUnit) {
    const bool wasReset = removeActiveUnit();
    activeAVAudioUnit = avAudioUnit;
    const auto output = engine->outputNode();
    engine->connect(engine->mainMixerNode(), output, output->outputFormat(0));
    if (isPlaying) {
        player->pause();
    }
    if (activeAVAudioUnit) {
        wireActiveUnit();
    } else if (!wasReset) {
        resetAudioLoop();
    }
    if (isPlaying) {
        player->play();
    }
}

bool AUEnginePlayer::removeActiveUnit() {
    if (!activeAVAudioUnit) {
        return false;
    }
    engine->disconnectNodeInput(activeAVAudioUnit);
    engine->disconnectNodeInput(engine->mainMixerNode());
    resetAudioLoop();
    engine->detach(activeAVAudioUnit);
    print("AUEnginePlayer: Audio unit was disconnecting and detaching.");
    activeAVAudioUnit = nullptr;
    return true;
}

void AUEnginePlayer::wireActiveUnit() {
    const auto unit = activeAVAudioUnit->auAudioUnit();
    if (!unit->MIDIOutputNames().empty()) {
        print(
            "AUEnginePlayer: The audio unit reports MIDI output names. Assigning a handling "
            "block.");
        unit->setMIDIOutputEventBlock(midiOutBlock);
    }
    engine->attach(activeAVAudioUnit);
    print("AUEnginePlayer: Audio unit was attached.");
    const auto mixer = engine->mainMixerNode();
    engine->disconnectNodeInput(mixer);
    if (!file) {
        print(
            "AUEnginePlayer::ERROR: There was a problem with the file processing format or the "
            "file is nil (yet).");
        return;
    }
    const auto format = file->processingFormat();
    engine->connect(player, activeAVAudioUnit, format);
    print("AUEnginePlayer: Audio Unit was connected to the player.");
    engine->connect(activeAVAudioUnit, mixer, format);
    print("AUEnginePlayer: Audio Unit was connected to the main mixer.");
}

void AUEnginePlayer::resetAudioLoop() {
    if (!file) {
        print("AUEnginePlayer: ERROR: There is a problem with the audio file processing format.");
        return;
    }
    engine->connect(player, engine->mainMixerNode(), file->processingFormat());
}

}  // namespace orvalo
