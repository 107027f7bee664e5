#include "platform/audio/engine/AVAudioOutputNode.h"

#include "platform/foundation/FatalError.h"

namespace orvalo {

AVAudioOutputNode::AVAudioOutputNode(std::unique_ptr<AudioOutput> output)
    : output_(std::move(output)) {}

AVAudioFormat AVAudioOutputNode::outputFormat(std::int64_t forBus) const {
    if (forBus != 0) {
        fatalError("The output node has bus 0 only.");
    }
    {
        const std::lock_guard lock(mutex_);
        if (manualFormat_) {
            return *manualFormat_;
        }
    }
    const std::lock_guard lock(formatMutex_);
    return output().format();
}

AudioOutput& AVAudioOutputNode::output() const {
    const std::lock_guard lock(mutex_);
    if (!output_) {
        output_ = AudioOutput::system();
    }
    return *output_;
}

void AVAudioOutputNode::setManualFormat(const AVAudioFormat& format) {
    const std::lock_guard lock(mutex_);
    manualFormat_ = format;
}

}  // namespace orvalo
