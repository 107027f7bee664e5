#include "platform/audio/engine/AVAudioPlayerNode.h"

#include <glib.h>
#include <pthread.h>
#include <semaphore.h>

#include <algorithm>
#include <atomic>
#include <cinttypes>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/audio/engine/AVAudioEngine.h"
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

AVAudioPlayerNode::Playback::Playback(std::function<void()> onFormatChange)
    : onFormatChange_(std::move(onFormatChange)) {
    sem_init(&wakeUp_, 0, 0);
}

AVAudioPlayerNode::Playback::~Playback() {
    sem_destroy(&wakeUp_);
}

std::shared_ptr<AVAudioPlayerNode::Playback> AVAudioPlayerNode::Playback::start(
    std::function<void()> onFormatChange) {
    std::shared_ptr<Playback> playback(new Playback(std::move(onFormatChange)));
    playback->decoder_ = std::jthread([playback](const std::stop_token& stopped) {
        pthread_setname_np(pthread_self(), "orvalo-decode");
        playback->decodeLoop(stopped);
    });
    return playback;
}

void AVAudioPlayerNode::Playback::finish() {
    stop();
    decoder_.request_stop();
    wake();
    if (decoder_.get_id() == std::this_thread::get_id()) {
        decoder_.detach();
    } else {
        decoder_.join();
    }
}

void AVAudioPlayerNode::Playback::schedule(std::shared_ptr<AVAudioFile> file,
                                           std::function<void()> completion) {
    Lock lock(mutex_);
    passes_.push_back({std::move(file), std::move(completion), 0, {}});
    updateMoreToDecode();
    // The first file's format is adopted here, so that an engine started next knows it.
    adoptNextFormat(lock);
    lock.unlock();
    wake();
}

void AVAudioPlayerNode::Playback::stop() {
    isPlaying_ = false;
    std::deque<Pass> ended;
    {
        Lock lock(mutex_);
        // A running completion may still schedule files, which this stop removes as well.
        if (decoder_.get_id() != std::this_thread::get_id()) {
            decoded_.wait(lock, [this] { return !isCompleting_; });
        }
        ++generation_;
        ended.swap(passes_);
        updateMoreToDecode();
        if (ring_) {
            replaceRing(ring_->format());
        }
        decoded_.notify_all();
    }
    for (const auto& pass : ended) {
        if (pass.completion) {
            pass.completion();
        }
    }
}

void AVAudioPlayerNode::Playback::pause() {
    const Lock lock(mutex_);
    isPlaying_ = false;
    decoded_.notify_all();
}

std::optional<AVAudioFormat> AVAudioPlayerNode::Playback::fileFormat() const {
    const Lock lock(mutex_);
    return ring_ ? std::optional(ring_->format()) : std::nullopt;
}

void AVAudioPlayerNode::Playback::setOutputFormat(const AVAudioFormat& format) {
    const Lock lock(mutex_);
    outputFormat_ = format;
    if (ring_) {
        stream_.exchange(std::make_unique<PlayerStream>(ring_, format));
    }
}

void AVAudioPlayerNode::Playback::render(const AudioBlock& /*input*/,
                                         const AudioBlock& output) noexcept {
    const RenderSlot<PlayerStream>::Access stream(stream_);
    if (!stream || !isPlaying_.load(std::memory_order_relaxed)) {
        silence(output);
        return;
    }
    const bool hasStarted = stream->ring()->consumed() > 0;
    if (!stream->render(output) && hasStarted && moreToDecode_.load(std::memory_order_relaxed)) {
        underruns_.fetch_add(1, std::memory_order_relaxed);
    }
    // The decoding thread stores the position, then loads consumed(); this thread does the
    // reverse. Both are sequentially consistent, so one of them sees the other's store.
    if (stream->ring()->consumed() >= wakePosition_.load(std::memory_order_seq_cst)) {
        wakePosition_.store(UINT64_MAX, std::memory_order_relaxed);
        wake();
    }
}

void AVAudioPlayerNode::Playback::setMaximumFrames(std::uint32_t frames) {
    const Lock lock(mutex_);
    maximumFrames_ = frames;
}

std::uint32_t AVAudioPlayerNode::Playback::awaitDecoded(std::uint32_t frameCount) {
    Lock lock(mutex_);
    bool hasWaited = false;
    decoded_.wait(lock, [&] {
        if (isCompleting_ || isCompletionDue()) {
            return false;
        }
        // Waiting for each single quantum would cost two thread switches a quantum.
        const bool isEnough =
            !ring_ || !isPlaying_ ||
            hasDecoded(std::exchange(hasWaited, true)
                           ? keptFrames()
                           : awaitedFrames(stream_.current()->demand(frameCount)));
        return isEnough;
    });
    auto count = ring_ ? std::min(frameCount, ring_->maximumFrames()) : frameCount;
    const auto isDecoded = [this](std::uint32_t frames) {
        return passes_.empty() || !isPlaying_ ||
               stream_.current()->demand(frames) <= ring_->written() - ring_->consumed();
    };
    while (count > kMaximumFramesToRender && !isDecoded(count)) {
        count = (count - 1) / kMaximumFramesToRender * kMaximumFramesToRender;
    }
    return count;
}

void AVAudioPlayerNode::Playback::decodeLoop(const std::stop_token& stopped) {
    Lock lock(mutex_);
    while (!stopped.stop_requested()) {
        if (!completePass(lock) && !adoptNextFormat(lock) && !decodeChunk(lock)) {
            sleepUntilNeeded(lock);
        }
    }
}

bool AVAudioPlayerNode::Playback::isCompletionDue() const {
    return !passes_.empty() && passes_.front().ringEnd &&
           ring_->consumed() >= completionPosition(passes_.front());
}

bool AVAudioPlayerNode::Playback::completePass(Lock& lock) {
    if (!isCompletionDue()) {
        return false;
    }
    auto completion = std::move(passes_.front().completion);
    passes_.pop_front();
    isCompleting_ = true;
    lock.unlock();
    if (completion) {
        completion();
        // The completion may hold the last reference to the player, which must be destroyed without
        // the lock.
        completion = nullptr;
    }
    lock.lock();
    isCompleting_ = false;
    decoded_.notify_all();
    return true;
}

bool AVAudioPlayerNode::Playback::adoptNextFormat(Lock& lock) {
    // Earlier passes complete by positions in the current ring.
    if (!nextFormatDiffers() || firstUndecoded() != &passes_.front() ||
        (ring_ && ring_->consumed() != ring_->written())) {
        return false;
    }
    replaceRing(firstUndecoded()->file->processingFormat());
    updateMoreToDecode();
    // Decoding pauses until the connections have the new format: frames that a stream of the old
    // format read from the ring would be lost.
    isAdopting_ = true;
    lock.unlock();
    onFormatChange_();
    lock.lock();
    isAdopting_ = false;
    return true;
}

bool AVAudioPlayerNode::Playback::decodeChunk(Lock& lock) {
    auto* pass = firstUndecoded();
    if (pass == nullptr || isAdopting_ || nextFormatDiffers() ||
        ring_->writable() < kMaximumFramesToRender) {
        return false;
    }
    const auto file = pass->file;
    const bool isStart = pass->decoded == 0;
    const auto generation = generation_;

    lock.unlock();
    if (!chunk_ || chunk_->format() != file->processingFormat()) {
        chunk_.emplace(file->processingFormat(), kMaximumFramesToRender);
    }
    if (isStart) {
        file->setFramePosition(0);
    }
    file->read(*chunk_);
    lock.lock();

    if (generation != generation_) {
        return true;
    }
    pass = firstUndecoded();
    ring_->write(chunk_->block(chunk_->frameLength));
    pass->decoded += chunk_->frameLength;
    if (pass->decoded >= file->length() || chunk_->frameLength == 0) {
        pass->ringEnd = ring_->written();
    }
    updateMoreToDecode();
    if (hasDecoded(keptFrames())) {
        decoded_.notify_all();
    }
    return true;
}

void AVAudioPlayerNode::Playback::sleepUntilNeeded(Lock& lock) {
    auto position = UINT64_MAX;
    if (!passes_.empty() && passes_.front().ringEnd) {
        position = completionPosition(passes_.front());
    }
    if (firstUndecoded() != nullptr && ring_ && !isAdopting_) {
        const auto written = ring_->written();
        // For another format the ring must be empty; otherwise half, so that each wake-up decodes
        // much.
        position = std::min(position, nextFormatDiffers() ? written : written - keptFrames());
    }
    wakePosition_.store(position, std::memory_order_seq_cst);
    if (ring_ && ring_->consumed() >= position) {
        return;
    }
    lock.unlock();
    reportUnderruns();
    while (sem_wait(&wakeUp_) != 0) {
    }
    lock.lock();
}

void AVAudioPlayerNode::Playback::reportUnderruns() {
    if (const auto underruns = underrunCount(); underruns != reportedUnderruns_) {
        g_warning("Decoding fell behind: %" PRIu64 " quanta were incomplete.",
                  underruns - reportedUnderruns_);
        reportedUnderruns_ = underruns;
    }
}

std::uint64_t AVAudioPlayerNode::Playback::awaitedFrames(std::uint32_t demand) const {
    // The decoding thread writes only while a whole chunk fits.
    return std::min(demand, ring_->capacity() - kMaximumFramesToRender);
}

std::uint64_t AVAudioPlayerNode::Playback::keptFrames() const {
    return std::max<std::uint64_t>(ring_->capacity() / 2,
                                   awaitedFrames(stream_.current()->largestDemand()));
}

bool AVAudioPlayerNode::Playback::hasDecoded(std::uint64_t frames) {
    if (firstUndecoded() == nullptr) {
        return true;
    }
    const auto available = ring_->written() - ring_->consumed();
    // A file of another format waits until rendering has emptied the ring.
    return nextFormatDiffers() ? available > 0 : available >= frames;
}

AVAudioPlayerNode::Playback::Pass* AVAudioPlayerNode::Playback::firstUndecoded() {
    const auto pass = std::find_if(passes_.begin(), passes_.end(),
                                   [](const Pass& candidate) { return !candidate.ringEnd; });
    return pass == passes_.end() ? nullptr : &*pass;
}

bool AVAudioPlayerNode::Playback::nextFormatDiffers() {
    const auto* pass = firstUndecoded();
    return pass != nullptr && (!ring_ || ring_->format() != pass->file->processingFormat());
}

void AVAudioPlayerNode::Playback::updateMoreToDecode() {
    moreToDecode_ = firstUndecoded() != nullptr && !nextFormatDiffers();
}

void AVAudioPlayerNode::Playback::replaceRing(const AVAudioFormat& format) {
    ring_ = std::make_shared<PlayerRing>(format, maximumFrames_);
    wakePosition_.store(UINT64_MAX, std::memory_order_relaxed);
    stream_.exchange(std::make_unique<PlayerStream>(ring_, outputFormat_.value_or(format)));
}

std::uint64_t AVAudioPlayerNode::Playback::completionPosition(const Pass& pass) const {
    const auto lead = static_cast<std::uint64_t>(
        ring_->format().sampleRate * std::chrono::duration<double>(consumptionLead).count());
    return *pass.ringEnd - std::min(lead, *pass.ringEnd);
}

AVAudioPlayerNode::AVAudioPlayerNode()
    : playback_(Playback::start([this] {
          if (const auto attachedTo = engine()) {
              attachedTo->derivedFormatsChanged();
          }
      })) {}

AVAudioPlayerNode::~AVAudioPlayerNode() {
    playback_->finish();
}

void AVAudioPlayerNode::play() {
    playback_->play();
}

void AVAudioPlayerNode::pause() {
    playback_->pause();
}

void AVAudioPlayerNode::stop() {
    playback_->stop();
}

bool AVAudioPlayerNode::isPlaying() const {
    return playback_->isPlaying();
}

void AVAudioPlayerNode::scheduleFile(std::shared_ptr<AVAudioFile> file,
                                     std::optional<AVAudioTime> /*at*/,
                                     std::function<void()> completionHandler) {
    playback_->schedule(std::move(file), std::move(completionHandler));
}

std::uint64_t AVAudioPlayerNode::underrunCount() const {
    return playback_->underrunCount();
}

AVAudioFormat AVAudioPlayerNode::derivedFormat(const AVAudioFormat* /*input*/,
                                               const AVAudioFormat& engineFormat) const {
    return playback_->fileFormat().value_or(engineFormat);
}

void AVAudioPlayerNode::prepareToRender(const AVAudioFormat* /*input*/,
                                        const AVAudioFormat& output) {
    playback_->setOutputFormat(output);
}

std::shared_ptr<RenderKernel> AVAudioPlayerNode::kernel() const {
    return playback_;
}

std::uint32_t AVAudioPlayerNode::awaitInput(std::uint32_t frameCount) {
    return playback_->awaitDecoded(frameCount);
}

void AVAudioPlayerNode::setRenderingOffline(bool isOffline) {
    playback_->setMaximumFrames(isOffline ? kMaximumOfflineFrames : kMaximumFramesToRender);
}

}  // namespace orvalo
