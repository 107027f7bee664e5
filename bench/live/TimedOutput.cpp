#include "bench/live/TimedOutput.h"

#include "bench/measuring/Clocks.h"

namespace orvalo::bench {

void TimedOutput::start(AudioOutputSource& source) {
    source_ = &source;
    output_->start(*this);
}

void TimedOutput::renderOutput(const AudioBlock& block) noexcept {
    const auto begin = monotonicNanoseconds();
    const auto effectBefore = effectTime_();
    source_->renderOutput(block);
    const auto effect = effectTime_() - effectBefore;
    times_.add(monotonicNanoseconds() - begin, effect, block.frameCount);
}

void TimedOutput::outputFormatChanged(const AVAudioFormat& format) {
    source_->outputFormatChanged(format);
}

void TimedOutput::outputDeviceMissing(bool isMissing) {
    source_->outputDeviceMissing(isMissing);
}

}  // namespace orvalo::bench
