#include "platform/audio/engine/AVAudioEngine.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <vector>

#include "platform/audio/engine/AVAudioSession.h"
#include "platform/audio/signal/DenormalGuard.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

AVAudioEngine::AVAudioEngine() : AVAudioEngine(nullptr) {
    // Queries the output in the background, because sound servers answer slowly.
    DispatchQueue::global()->async([output = outputNode_] { output->outputFormat(0); });
}

AVAudioEngine::AVAudioEngine(std::unique_ptr<AudioOutput> output)
    : mixer_(new AVAudioMixerNode()), outputNode_(new AVAudioOutputNode(std::move(output))) {
    graph_.attach(mixer_);
    graph_.attach(outputNode_);
    graph_.connect(mixer_, outputNode_, {});
}

AVAudioEngine::~AVAudioEngine() {
    stop();
}

void AVAudioEngine::attach(const std::shared_ptr<AVAudioNode>& node) {
    const std::lock_guard lock(mutex_);
    graph_.attach(node);
    node->setRenderingOffline(isManual_);
    node->setEngine(shared(this));
}

void AVAudioEngine::detach(const std::shared_ptr<AVAudioNode>& node) {
    const std::lock_guard lock(mutex_);
    graph_.detach(node);
    publish();
    compiler_.forget(node);
    node->setRenderingOffline(false);
    node->setEngine(nullptr);
}

void AVAudioEngine::connect(const std::shared_ptr<AVAudioNode>& from,
                            const std::shared_ptr<AVAudioNode>& to,
                            const std::optional<AVAudioFormat>& format) {
    if ((from == mixer_) != (to == outputNode_) || from == outputNode_) {
        fatalError("The main mixer feeds the output node, and nothing else does.");
    }
    const std::lock_guard lock(mutex_);
    graph_.connect(from, to, format);
    publish();
}

void AVAudioEngine::disconnectNodeInput(const std::shared_ptr<AVAudioNode>& node) {
    const std::lock_guard lock(mutex_);
    graph_.disconnectInput(node);
    publish();
}

void AVAudioEngine::prepare() {
    static_cast<void>(outputNode_->outputFormat(0));
}

void AVAudioEngine::start() {
    const std::lock_guard startLock(startMutex_);
    if (isRunning_) {
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        // Converters still hold the end of the audio before the last stop().
        compiler_.forgetConverters();
        for (const auto& node : graph_.nodes()) {
            node->engineStarts();
        }
        isRunning_ = true;
        publish();
    }
    if (isManual_) {
        return;
    }
    const auto undo = [this] {
        isRunning_ = false;
        const std::lock_guard lock(mutex_);
        plan_.exchange(nullptr);
    };
    try {
        outputNode_->output().start(*this);
    } catch (const NSError&) {
        undo();
        throw;
    } catch (const std::system_error& error) {
        undo();
        throw NSError::posix(error.code().value(), "The audio output cannot start a thread");
    }
}

void AVAudioEngine::stop() {
    const std::lock_guard startLock(startMutex_);
    if (!isRunning_) {
        return;
    }
    if (!isManual_) {
        outputNode_->output().stop();
        AVAudioSession::sharedInstance()->setOutputMissing(false);
    }
    isRunning_ = false;
    const std::lock_guard lock(mutex_);
    plan_.exchange(nullptr);
}

void AVAudioEngine::enableManualRenderingMode(const AVAudioFormat& format) {
    const std::lock_guard startLock(startMutex_);
    if (isRunning_) {
        fatalError("Manual rendering mode can be enabled only while the engine is stopped.");
    }
    outputNode_->setManualFormat(format);
    isManual_ = true;
    const std::lock_guard lock(mutex_);
    for (const auto& node : graph_.nodes()) {
        node->setRenderingOffline(true);
    }
}

void AVAudioEngine::renderOffline(std::uint32_t frameCount, AVAudioPCMBuffer& buffer) {
    buffer.frameLength = 0;
    for (std::uint32_t done = 0; done < frameCount;) {
        done += renderOfflineSlice(frameCount - done, buffer, done);
    }
}

std::uint32_t AVAudioEngine::renderOfflineSlice(std::uint32_t frameCount, AVAudioPCMBuffer& buffer,
                                                std::uint32_t from) {
    if (!isManual_ || !isRunning_) {
        fatalError("Offline rendering needs a started engine in manual rendering mode.");
    }
    if (from + frameCount > buffer.frameCapacity()) {
        fatalError("The buffer has no room for the frames to render.");
    }
    if (buffer.format().channelCount != outputNode_->outputFormat(0).channelCount) {
        fatalError("The buffer has other channels than the manual rendering format.");
    }
    const DenormalGuard denormals;
    // A player replaces its stream only between render calls, so waiting inside one would deadlock.
    std::vector<std::shared_ptr<AVAudioNode>> nodes;
    {
        const std::lock_guard lock(mutex_);
        nodes = graph_.nodes();
    }
    auto most = std::min(frameCount, kMaximumOfflineFrames);
    for (const auto& node : nodes) {
        most = std::min(most, node->maximumFramesToRender());
    }
    for (const auto& node : nodes) {
        most = std::min(most, node->awaitInput(most));
    }
    std::array<float*, kMaximumChannels> channels{};
    const RenderSlot<RenderPlan>::Access plan(plan_);
    if (!plan) {
        // Another thread has called stop().
        silence(buffer.block(from, frameCount, channels));
        buffer.frameLength = from + frameCount;
        return frameCount;
    }
    const auto count = plan->sliceThatFits(most);
    plan->render(buffer.block(from, count, channels));
    buffer.frameLength = from + count;
    return count;
}

std::uint64_t AVAudioEngine::xrunCount() const {
    return isRunning_ && !isManual_ ? outputNode_->output().xrunCount() : 0;
}

void AVAudioEngine::renderOutput(const AudioBlock& block) noexcept {
    const RenderSlot<RenderPlan>::Access plan(plan_);
    plan->render(block);
}

void AVAudioEngine::outputFormatChanged(const AVAudioFormat& /*format*/) {
    const std::lock_guard lock(mutex_);
    publish();
}

void AVAudioEngine::outputDeviceMissing(bool isMissing) {
    AVAudioSession::sharedInstance()->setOutputMissing(isMissing);
}

void AVAudioEngine::derivedFormatsChanged() {
    const std::lock_guard lock(mutex_);
    publish();
}

void AVAudioEngine::publish() {
    if (!isRunning_) {
        return;
    }
    const auto format = outputNode_->outputFormat(0);
    const auto frames = isManual_ ? kMaximumOfflineFrames : kMaximumFramesToRender;
    const auto renderSilence = [&] {
        plan_.exchange(std::make_unique<RenderPlan>(std::vector<RenderPlan::Branch>{},
                                                    format.channelCount, frames));
    };
    plan_.exchange(compiler_.compile(graph_, mixer_, outputNode_, format, frames, renderSilence));
}

}  // namespace orvalo
