#include "platform/audio/output/NullOutput.h"

#include "platform/audio/output/ClockStream.h"
#include "platform/foundation/FatalError.h"

namespace orvalo {

NullOutput::NullOutput(const AVAudioFormat& format, std::uint32_t quantumFrames)
    : facts_{format, quantumFrames, ""}, gate_(std::make_shared<RenderGate>()) {
    if (quantumFrames == 0) {
        fatalError("NullOutput: a quantum has at least one frame.");
    }
}

NullOutput::~NullOutput() {
    gate_->close();
    stream_.reset();
}

void NullOutput::start(AudioOutputSource& source) {
    if (stream_) {
        fatalError("NullOutput: started while it plays.");
    }
    earlierXruns_ = gate_->xrunCount();
    gate_->open(source);
    stream_ = std::make_unique<ClockStream>(facts_, gate_);
}

void NullOutput::stop() {
    gate_->close();
    stream_.reset();
}

std::uint64_t NullOutput::xrunCount() const {
    return gate_->xrunCount() - earlierXruns_;
}

}  // namespace orvalo
