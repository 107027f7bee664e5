#pragma once

#include <semaphore.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/audio/engine/AVAudioPlayerNode.h"
#include "platform/audio/engine/PlayerRing.h"
#include "platform/audio/engine/PlayerStream.h"
#include "platform/audio/signal/RenderSlot.h"

namespace orvalo {

/// A player at work: what is scheduled, the thread that decodes it ahead, and the render side that
/// reads it. The ring has the format of the file that plays; a file of another format waits until
/// the ring has run empty, then the ring is replaced.
class AVAudioPlayerNode::Playback : public RenderKernel {
  public:
    /// onFormatChange: called without locks held when files of another format play from now on.
    /// The thread holds the playback until finish().
    static std::shared_ptr<Playback> start(std::function<void()> onFormatChange);
    ~Playback() override;
    /// Stops, and ends the thread; has waited for it unless called on it, by a completion that
    /// lets go of the player.
    void finish();

    void play() { isPlaying_ = true; }
    void pause();
    void stop();
    bool isPlaying() const { return isPlaying_; }
    void schedule(std::shared_ptr<AVAudioFile> file, std::function<void()> completion);
    std::uint64_t underrunCount() const { return underruns_; }

    /// The format of what plays, absent before the first file.
    std::optional<AVAudioFormat> fileFormat() const;
    /// Takes the connection's format.
    void setOutputFormat(const AVAudioFormat& format);

    void render(const AudioBlock& input, const AudioBlock& output) noexcept override;
    /// Waits until completions that are due have been called, and a whole quantum is decoded or
    /// nothing more is scheduled. For offline rendering.
    void awaitDecoded();

  private:
    struct Pass {
        std::shared_ptr<AVAudioFile> file;
        std::function<void()> completion;
        std::int64_t decoded = 0;              ///< Frames of the file in the ring so far.
        std::optional<std::uint64_t> ringEnd;  ///< Where the pass ends, once wholly decoded.
    };
    using Lock = std::unique_lock<std::mutex>;

    explicit Playback(std::function<void()> onFormatChange);
    void decodeLoop(const std::stop_token& stopped);
    bool isCompletionDue() const;
    bool completePass(Lock& lock);
    bool adoptNextFormat(Lock& lock);
    bool decodeChunk(Lock& lock);
    void sleepUntilNeeded(Lock& lock);

    void reportUnderruns();

    /// How many decoded frames awaitDecoded() does not wait with.
    std::uint64_t awaitedFrames() const;
    /// With how many decoded frames left the decoding thread goes on.
    std::uint64_t keptFrames() const;
    /// Whether so many frames are decoded, or else as many as can be now.
    bool hasDecoded(std::uint64_t frames);
    Pass* firstUndecoded();
    bool nextFormatDiffers();
    void noteWhatIsLeft();
    void replaceRing(const AVAudioFormat& format);
    std::uint64_t completionPosition(const Pass& pass) const;
    void wake() { sem_post(&wakeUp_); }

    const std::function<void()> onFormatChange_;

    mutable std::mutex mutex_;
    std::condition_variable decoded_;
    std::deque<Pass> passes_;  ///< Not yet completed, in order.
    std::shared_ptr<PlayerRing> ring_;
    std::optional<AVAudioPCMBuffer> chunk_;  ///< The decoding thread's own.
    std::optional<AVAudioFormat> outputFormat_;
    bool isCompleting_ = false;            ///< A completion is under way on the decoding thread.
    bool isAdopting_ = false;              ///< The connections are following a new format.
    std::uint64_t generation_ = 0;         ///< Counts what makes a chunk under way worthless.
    std::uint64_t reportedUnderruns_ = 0;  ///< The decoding thread's own.

    RenderSlot<PlayerStream> stream_;
    std::atomic<bool> isPlaying_ = false;
    std::atomic<bool> moreToDecode_ = false;
    std::atomic<std::uint64_t> underruns_ = 0;
    /// The ring position at which the decoding thread wants to be woken.
    std::atomic<std::uint64_t> wakePosition_ = UINT64_MAX;
    sem_t wakeUp_{};

    std::jthread decoder_;
};

}  // namespace orvalo
