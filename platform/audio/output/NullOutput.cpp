#include "platform/audio/output/NullOutput.h"

#include "platform/audio/output/ClockStream.h"
#include "platform/foundation/FatalError.h"

namespace orvalo {

NullOutput::NullOutput(const AVAudioFormat& format, std::uint32_t quantumFrames)
    : facts_{format, quantumFrames, ""}, feed_(std::make_shared<StreamFeed>()) {
    if (quantumFrames == 0) {
        fatalError("NullOutput: a quantum has at least one frame.");
    }
}

NullOutput::~NullOutput() {
    feed_->disconnect();
    stream_.reset();
}

void NullOutput::start(AudioOutputSource& source) {
    if (stream_) {
        fatalError("NullOutput: started while it plays.");
    }
    earlierXruns_ = feed_->xrunCount();
    feed_->connect(source);
    stream_ = std::make_unique<ClockStream>(facts_, feed_);
}

void NullOutput::stop() {
    feed_->disconnect();
    stream_.reset();
}

std::uint64_t NullOutput::xrunCount() const {
    return feed_->xrunCount() - earlierXruns_;
}

}  // namespace orvalo
