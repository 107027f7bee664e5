#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "Audio Engine/AUEnginePlayerDelegate.h"
#include "Audio Engine/MIDIReport.h"
#include "platform/audio/engine/AVAudioEngine.h"
#include "platform/audio/engine/AVAudioPlayerNode.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/audio/file/AVAudioFile.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/NSObject.h"
#include "platform/foundation/URL.h"

namespace orvalo {

/// Plays demonstration files through an effect: each start picks one at random and plays it pass
/// after pass until the stop. The public operations may be called from any thread except from work
/// on the player's own queue; load(), start(), stop() and toggle() by one thread at a time. What
/// changes the graph or the playing state runs on that queue, on the caller's thread. Messages go
/// to standard output. Held by std::shared_ptr, by itself too while it plays.
class AUEnginePlayer : public NSObject {
  private:
    /// Installed on an effect that has MIDI outputs.
    const AUMIDIOutputEventBlock midiOutBlock = makeMIDIReport();

  public:
    /// Told what happens; may be absent. Set before the player is used.
    std::shared_ptr<AUEnginePlayerDelegate> delegate;

  private:
    const std::shared_ptr<AVAudioEngine> engine;
    /// The effect in the graph. On stateChangeQueue.
    std::shared_ptr<AVAudioUnit> activeAVAudioUnit;
    /// Written on stateChangeQueue.
    std::atomic<bool> isPlaying = false;
    /// Passes that have ended since the file was loaded.
    std::atomic<std::int64_t> loopCount = 0;
    const std::shared_ptr<DispatchQueue> stateChangeQueue =
        DispatchQueue::serial("com.Tessaly.AUEnginePlayer.stateQueue");
    const std::shared_ptr<AVAudioPlayerNode> player = std::make_shared<AVAudioPlayerNode>();
    /// What is played. On stateChangeQueue.
    std::shared_ptr<AVAudioFile> file;
    /// Where file came from, or what was tried last. On stateChangeQueue.
    std::optional<URL> fileURL;
    const std::shared_ptr<Bundle> bundle;

  public:
    /// audioEngine: renders the graph; its output is chosen at the first need. resourceBundle:
    /// holds the demonstration files.
    explicit AUEnginePlayer(
        std::shared_ptr<AVAudioEngine> audioEngine = std::make_shared<AVAudioEngine>(),
        std::shared_ptr<Bundle> resourceBundle = Bundle::main());
    /// The end of life: stops, then disconnects the effect.
    virtual void finalize();
    /// Takes the effect out of the graph.
    virtual void disconnect();
    /// Opens a file and plays it from the next pass on. A file that cannot be opened is reported,
    /// and the previous one stays. An absent address is a fatal error.
    virtual void load(const std::optional<URL>& url);

  private:
    virtual void randomizeFile();
    virtual void setSessionActive(bool active);

  public:
    /// Loads a random demonstration file, then starts playing unless it plays already. Returns when
    /// the engine has started. A missing demonstration file, a refusing audio session and an engine
    /// that does not start are fatal errors.
    virtual void start();

  private:
    virtual void startPlayingInternal();
    virtual void scheduleEffectLoop();

  public:
    /// Stops playing, if it plays. Returns when the engine has stopped.
    virtual void stop();

  private:
    virtual void stopPlayingInternal();

  public:
    /// Starts or stops; whether it plays then.
    virtual bool toggle();
    /// Puts an effect between player and main mixer in place of the present one, or, when it is
    /// absent, only takes that one out. Until the first file is loaded, an effect is attached but
    /// not wired. completion: called once, on the calling thread, when the graph is complete.
    virtual void connect(const std::shared_ptr<AVAudioUnit>& avAudioUnit,
                         const std::function<void()>& completion);

  private:
    virtual void resetAudioLoop();

    friend struct AUEnginePlayerPeer;  ///< The tests' view of the private parts.

    void rewire(const std::shared_ptr<AVAudioUnit>& avAudioUnit);
    bool removeActiveUnit();
    void wireActiveUnit();
    void rewireForFile();
    void passEnded();
    void countPass();
};

}  // namespace orvalo
