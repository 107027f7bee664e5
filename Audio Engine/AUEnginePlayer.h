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

/// Plays demonstration files through an effect: each start picks a random file and plays it pass
/// after pass until the stop. Public operations: any thread, but not from work on the player's own
/// queue; load(), start(), stop() and toggle() by one thread at a time. Changes of the graph and of
/// the playing state run on that queue, on the caller's thread. Prints messages to standard output.
/// Keeps itself alive while it plays.
class AUEnginePlayer : public NSObject {
  private:
    /// Set on effects with MIDI outputs.
    const AUMIDIOutputEventBlock midiOutBlock = makeMIDIReport();

  public:
    /// May be absent. Set before the player is used.
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
    /// The file to play. On stateChangeQueue.
    std::shared_ptr<AVAudioFile> file;
    /// The address of the last load, also of a failed one. On stateChangeQueue.
    std::optional<URL> fileURL;
    const std::shared_ptr<Bundle> bundle;

  public:
    /// audioEngine: renders the graph. resourceBundle: holds the demonstration files.
    explicit AUEnginePlayer(
        std::shared_ptr<AVAudioEngine> audioEngine = std::make_shared<AVAudioEngine>(),
        std::shared_ptr<Bundle> resourceBundle = Bundle::main());
    /// Stops and disconnects the effect. The last operation.
    virtual void finalize();
    /// Removes the effect from the graph.
    virtual void disconnect();
    /// Opens a file, which plays from the next pass on. When it cannot be opened, prints an error
    /// and keeps the previous file. An absent address is a fatal error.
    virtual void load(const std::optional<URL>& url);

  private:
    virtual void randomizeFile();
    virtual void setSessionActive(bool active);

  public:
    /// Loads a random demonstration file and starts playing, unless it plays already. Returns when
    /// the engine has started. A missing demonstration file and errors of the audio session and the
    /// engine are fatal.
    virtual void start();

  private:
    virtual void startPlayingInternal();

  protected:
    /// Schedules the next pass. On stateChangeQueue.
    virtual void scheduleEffectLoop();

  public:
    /// Stops playing. Returns when the engine has stopped.
    virtual void stop();

  private:
    virtual void stopPlayingInternal();

  public:
    /// Starts or stops. Returns whether it plays afterwards.
    virtual bool toggle();
    /// Connects an effect between player and main mixer in place of the current one. Null only
    /// removes the current one. Before the first file is loaded, the effect is attached but not
    /// connected. completion: called once, on the calling thread, when the graph is complete.
    virtual void connect(const std::shared_ptr<AVAudioUnit>& avAudioUnit,
                         const std::function<void()>& completion);

  private:
    virtual void resetAudioLoop();

    friend struct AUEnginePlayerPeer;  ///< For tests.

    void rewire(const std::shared_ptr<AVAudioUnit>& avAudioUnit);
    bool removeActiveUnit();
    void wireActiveUnit();
    void rewireForFile();
    void passEnded();
    void countPass();
};

}  // namespace orvalo
