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

/// The scheduled passes of a player, the thread that decodes them ahead, and the kernel that
/// renders them. The ring has the format of the file that plays; a file of another format waits
/// until the ring is empty, then the ring is replaced. Separate from the node because the thread
/// may outlive the node.
class AVAudioPlayerNode::Playback : public RenderKernel {
  public:
    /// onFormatChange: called without locks when a file of another format starts to play. The
    /// thread keeps the playback alive until finish().
    static std::shared_ptr<Playback> start(std::function<void()> onFormatChange);
    ~Playback() override;
    /// Stops playback and the thread. Joins the thread, unless a completion on that thread releases
    /// the player.
    void finish();

    void play() { isPlaying_ = true; }
    void pause();
    void stop();
    bool isPlaying() const { return isPlaying_; }
    void schedule(std::shared_ptr<AVAudioFile> file, std::function<void()> completion);
    std::uint64_t underrunCount() const { return underruns_; }

    /// The format of the file that plays; absent before the first file.
    std::optional<AVAudioFormat> fileFormat() const;
    /// Sets the connection's format.
    void setOutputFormat(const AVAudioFormat& format);

    void render(const AudioBlock& input, const AudioBlock& output) noexcept override;
    /// The most frames of one render(), from the next ring on.
    void setMaximumFrames(std::uint32_t frames);
    /// AVAudioNode::awaitInput(). Waits for due completions too, and lets no render call run past
    /// the decoded frames before their completion had the chance to schedule more.
    std::uint32_t awaitDecoded(std::uint32_t frameCount);

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

    /// The decoded frames that let awaitDecoded() return for a render() that reads `demand` frames.
    std::uint64_t awaitedFrames(std::uint32_t demand) const;
    /// The decoded frames below which the decoding thread resumes.
    std::uint64_t keptFrames() const;
    /// Whether so many frames are decoded, or as many as possible before the next format.
    bool hasDecoded(std::uint64_t frames);
    Pass* firstUndecoded();
    bool nextFormatDiffers();
    void updateMoreToDecode();
    void replaceRing(const AVAudioFormat& format);
    std::uint64_t completionPosition(const Pass& pass) const;
    void wake() { sem_post(&wakeUp_); }

    const std::function<void()> onFormatChange_;

    mutable std::mutex mutex_;
    std::condition_variable decoded_;
    std::deque<Pass> passes_;  ///< Not completed, in order.
    std::shared_ptr<PlayerRing> ring_;
    std::optional<AVAudioPCMBuffer> chunk_;  ///< Decoding thread only.
    std::optional<AVAudioFormat> outputFormat_;
    std::uint32_t maximumFrames_ = kMaximumFramesToRender;
    bool isCompleting_ = false;            ///< The decoding thread calls a completion.
    bool isAdopting_ = false;              ///< onFormatChange_ is running.
    std::uint64_t generation_ = 0;         ///< A chunk decoded for an earlier one is discarded.
    std::uint64_t reportedUnderruns_ = 0;  ///< Decoding thread only.

    RenderSlot<PlayerStream> stream_;
    std::atomic<bool> isPlaying_ = false;
    std::atomic<bool> moreToDecode_ = false;
    std::atomic<std::uint64_t> underruns_ = 0;
    /// The ring position at which the render thread wakes the decoding thread.
    std::atomic<std::uint64_t> wakePosition_ = UINT64_MAX;
    sem_t wakeUp_{};

    std::jthread decoder_;
};

}  // namespace orvalo
