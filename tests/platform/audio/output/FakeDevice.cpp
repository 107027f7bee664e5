#include "tests/platform/audio/output/FakeDevice.h"

#include <chrono>
#include <utility>

#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/foundation/NSError.h"

namespace orvalo::testing {

namespace {

class FakeStream : public OutputStream {
  public:
    FakeStream(OutputFacts facts, std::shared_ptr<StreamFeed> feed,
               std::shared_ptr<FakeControls> controls)
        : facts_(std::move(facts)),
          feed_(std::move(feed)),
          controls_(std::move(controls)),
          thread_([this] { run(); }) {
        controls_->feed = feed_.get();
        ++controls_->liveCount;
        ++controls_->openCount;
    }
    ~FakeStream() override {
        stopping_ = true;
        thread_.join();
        --controls_->liveCount;
    }
    FakeStream(const FakeStream&) = delete;
    FakeStream& operator=(const FakeStream&) = delete;

    const OutputFacts& facts() const override { return facts_; }

  private:
    void run() {
        const AVAudioPCMBuffer buffer(facts_.format, facts_.frameCount);
        while (!stopping_) {
            if (!controls_->isFrozen) {
                feed_->render(buffer.block(facts_.frameCount));
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    OutputFacts facts_;
    std::shared_ptr<StreamFeed> feed_;
    std::shared_ptr<FakeControls> controls_;
    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

}  // namespace

void FakeControls::endStream() const {
    feed.load()->markEnded();
}

void FakeControls::countXruns(std::uint64_t count) const {
    feed.load()->countXruns(count);
}

FakeDevice::FakeDevice(std::string name, std::shared_ptr<FakeControls> controls)
    : name_(std::move(name)), controls_(std::move(controls)) {}

OutputFacts FakeDevice::probe() {
    ++controls_->probeCount;
    if (controls_->whileProbing) {
        controls_->whileProbing();
    }
    if (!controls_->isThere) {
        throw NSError("FakeErrorDomain", 6, "no " + name_ + " is there");
    }
    return OutputFacts{{controls_->sampleRate, 2}, controls_->frameCount, name_};
}

std::unique_ptr<OutputStream> FakeDevice::open(const OutputFacts& facts,
                                               std::shared_ptr<StreamFeed> feed) {
    if (controls_->diesWhileItOpens) {
        throw outputError(name_ + " went away", kDeviceWentAway);
    }
    if (!controls_->opens) {
        throw NSError("FakeErrorDomain", 7, name_ + " is busy");
    }
    return std::make_unique<FakeStream>(facts, std::move(feed), controls_);
}

}  // namespace orvalo::testing
