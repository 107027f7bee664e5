#include "platform/audio/engine/AVAudioPlayerNode.h"

#include "platform/audio/engine/AVAudioEngine.h"
#include "platform/audio/engine/PlayerPlayback.h"

namespace orvalo {

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
