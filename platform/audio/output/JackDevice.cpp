#include "platform/audio/output/JackDevice.h"

#include <chrono>
#include <exception>
#include <utility>

#include "platform/audio/output/JackClient.h"
#include "platform/audio/output/JackStream.h"

namespace orvalo {

namespace {

// Many times the duration of a probe on an idle machine.
constexpr std::chrono::milliseconds kProbeLimit{2000};

/// Sets the promise before it closes the client: closing needs a third of the time.
void probeServer(std::promise<OutputFacts>& facts) {
    try {
        const auto client = openIdleJackClient();
        facts.set_value(jackFacts(client.get()));
    } catch (const NSError&) {
        facts.set_exception(std::current_exception());
    }
}

}  // namespace

JackDevice::~JackDevice() {
    // Otherwise a call into libjack would use objects that the ending program destroys.
    if (probe_) {
        probe_->end.wait_for(kProbeLimit);
    }
}

OutputFacts JackDevice::probe() {
    std::chrono::milliseconds limit{0};
    // The facts of an earlier probe are out of date.
    if (!probe_ || probe_->facts.wait_for(limit) == std::future_status::ready) {
        const auto facts = std::make_shared<std::promise<OutputFacts>>();
        auto end = libjack().start([facts] { probeServer(*facts); });
        probe_ = Probe{facts->get_future(), std::move(end)};
        limit = kProbeLimit;
    }
    if (probe_->facts.wait_for(limit) != std::future_status::ready) {
        throw outputError("the JACK server does not answer");
    }
    return probe_->facts.get();
}

std::unique_ptr<OutputStream> JackDevice::open(const OutputFacts& facts,
                                               std::shared_ptr<StreamFeed> feed) {
    return std::make_unique<JackStream>(facts, std::move(feed));
}

}  // namespace orvalo
