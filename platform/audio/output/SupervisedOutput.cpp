#include "platform/audio/output/SupervisedOutput.h"

#include <glib.h>
#include <pthread.h>

#include <algorithm>
#include <cmath>
#include <system_error>
#include <utility>

#include "platform/audio/output/ClockStream.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

/// "48000 Hz, 2 channels, 64 frames".
std::string text(const OutputFacts& facts) {
    const auto channels = facts.format.channelCount;
    return std::to_string(std::llround(facts.format.sampleRate)) + " Hz, " +
           std::to_string(channels) + (channels == 1 ? " channel, " : " channels, ") +
           std::to_string(facts.frameCount) + " frames";
}

/// Calls attempt() and returns true, or false with the reason of the failure, as the end of a
/// sentence.
template <typename Attempt>
bool succeeds(const OutputDevice& device, std::string& failure, const Attempt& attempt) {
    try {
        attempt();
        return true;
    } catch (const NSError& error) {
        failure = error.what();
    } catch (const std::system_error& error) {
        // Devices use threads, which a system at its limits refuses.
        failure = "it cannot be used (" + error.code().message() + ")";
    }
    g_debug("Audio output %s: %s.", device.name().c_str(), failure.c_str());
    return false;
}

}  // namespace

SupervisedOutput::SupervisedOutput(std::vector<std::unique_ptr<OutputDevice>> devices,
                                   Absence absence, const Timing& timing)
    : devices_(std::move(devices)),
      absence_(absence),
      timing_(timing),
      wakeSignal_(std::make_shared<WakeSignal>()) {}

SupervisedOutput::~SupervisedOutput() {
    stop();
}

AVAudioFormat SupervisedOutput::format() {
    {
        const std::lock_guard lock(facts_);
        if (reportedFormat_) {
            return *reportedFormat_;
        }
    }
    OutputFacts facts;
    std::string failure;
    static_cast<void>(std::any_of(devices_.begin(), devices_.end(), [&](const auto& device) {
        return succeeds(*device, failure, [&] { facts = probe(*device); });
    }));
    const std::lock_guard lock(facts_);
    if (!reportedFormat_) {
        reportedFormat_ = facts.format;
    }
    return *reportedFormat_;
}

void SupervisedOutput::start(AudioOutputSource& source) {
    if (source_ != nullptr) {
        fatalError("AudioOutput: started while it plays.");
    }
    {
        const std::lock_guard lock(facts_);
        countedFeed_.reset();
        earlierXruns_ = 0;
    }
    if (absence_ == Absence::fail) {
        pauses_.clear();
    }
    lost_ = nullptr;
    const bool isOpen = openAny(nullptr);
    if (lost_ != nullptr) {
        g_warning("Audio output: %s went away while it was opened.", lost_->name().c_str());
    }
    if (isOpen) {
        g_message("Audio output: %s, %s.", playing_.device->name().c_str(),
                  text(playing_.stream->facts()).c_str());
    } else if (absence_ == Absence::fail && lost_ == nullptr) {
        throw outputError("The audio output " + devices_.front()->name() +
                              " cannot be opened: " + lastFailure_ + ".",
                          kNoOutput);
    } else {
        openClock({});
        g_message(devices_.empty()
                      ? "Audio output: a silent clock (%s)."
                      : "Audio output: none found; a silent clock takes its place (%s).",
                  text(playing_.stream->facts()).c_str());
    }
    // A start is a reason to try the others, too, but not to wait for them.
    for (auto& [device, pause] : pauses_) {
        pause.end = retryAt_ = Clock::now();
    }
    source_ = &source;
    reportedMissing_ = false;
    stopping_ = false;
    replacedAtOnce_ = false;
    thread_ = std::thread([this] { supervise(); });
}

void SupervisedOutput::stop() {
    if (source_ == nullptr) {
        return;
    }
    stopping_ = true;
    wakeSignal_->send();
    thread_.join();
    endPlaying();
    source_ = nullptr;
}

std::uint64_t SupervisedOutput::xrunCount() const {
    const std::lock_guard lock(facts_);
    return earlierXruns_ + (countedFeed_ ? countedFeed_->xrunCount() : 0);
}

OutputFacts SupervisedOutput::probe(OutputDevice& device) {
    try {
        auto facts = device.probe();
        seen_ = &device;
        return facts;
    } catch (const NSError& error) {
        if (error.code() == kDeviceWentAway) {
            seen_ = &device;
        }
        throw;
    }
}

bool SupervisedOutput::open(OutputDevice& device) {
    bool isThere = false;
    const bool isOpen = succeeds(device, lastFailure_, [&] {
        auto feed = std::make_shared<StreamFeed>(wakeSignal_);
        const auto facts = probe(device);
        isThere = true;
        try {
            auto stream = device.open(facts, feed);
            setPlaying({&device, std::move(feed), std::move(stream)});
        } catch (const NSError& error) {
            isThere = error.code() != kDeviceWentAway;
            throw;
        }
    });
    if (!isThere && seen_ == &device) {
        lost_ = &device;
    }
    return isOpen;
}

bool SupervisedOutput::openAny(const OutputDevice* except) {
    return std::any_of(devices_.begin(), devices_.end(), [&](const auto& device) {
        return device.get() != except && !isPaused(*device) && open(*device);
    });
}

bool SupervisedOutput::openOneThatRenders() {
    return std::any_of(devices_.begin(), devices_.end(), [this](const auto& device) {
        if (stopping_ || isPaused(*device) || !open(*device)) {
            return false;
        }
        const auto& feed = *playing_.feed;
        while (feed.renderCount() == 0 && !feed.hasEnded() && !stopping_ &&
               Clock::now() - openedAt_ < timing_.silence) {
            wakeSignal_->wait(timing_.watch);
        }
        if (feed.renderCount() > 0 && !feed.hasEnded()) {
            return true;
        }
        playing_ = {};
        if (!stopping_) {
            g_debug("Audio output %s: it opens and does not play.", device->name().c_str());
            pause(*device);
        }
        return false;
    });
}

bool SupervisedOutput::isPaused(const OutputDevice& device) const {
    const auto pause = pauses_.find(&device);
    return pause != pauses_.end() && Clock::now() < pause->second.end;
}

void SupervisedOutput::pause(const OutputDevice& device) {
    auto& pause = pauses_[&device];
    pause.length = std::min(std::max(timing_.retry, 2 * pause.length), timing_.longestPause);
    pause.end = Clock::now() + pause.length;
}

void SupervisedOutput::openClock(const OutputFacts& facts) {
    auto feed = std::make_shared<StreamFeed>(wakeSignal_);
    auto stream = std::make_unique<ClockStream>(facts, feed);
    setPlaying({nullptr, std::move(feed), std::move(stream)});
    retryAt_ = openedAt_ + timing_.retry;
}

void SupervisedOutput::setPlaying(Playing playing) {
    playing_ = std::move(playing);
    seen_ = nullptr;
    openedAt_ = lastRenderAt_ = Clock::now();
    lastRenderCount_ = 0;
    const std::lock_guard lock(facts_);
    countedFeed_ = playing_.feed;
}

void SupervisedOutput::endPlaying() {
    playing_.feed->disconnect();
    playing_.stream.reset();
    const std::lock_guard lock(facts_);
    earlierXruns_ += playing_.feed->xrunCount();
    countedFeed_.reset();
}

void SupervisedOutput::supervise() {
    pthread_setname_np(pthread_self(), "orvalo-output");
    connectSource();
    while (!stopping_) {
        wakeSignal_->wait(timing_.watch);
        if (stopping_) {
            return;
        }
        noteRendering();
        if (playing_.device == nullptr) {
            if (!devices_.empty() && Clock::now() >= retryAt_) {
                returnToDevice();
            }
        } else if (isDead()) {
            replaceStream();
        }
    }
}

void SupervisedOutput::connectSource() {
    const auto format = playing_.stream->facts().format;
    bool changed = false;
    {
        const std::lock_guard lock(facts_);
        changed = reportedFormat_ && *reportedFormat_ != format;
        reportedFormat_ = format;
    }
    if (changed) {
        source_->outputFormatChanged(format);
    }
    const bool isMissing = playing_.device == nullptr && !devices_.empty();
    if (std::exchange(reportedMissing_, isMissing) != isMissing) {
        source_->outputDeviceMissing(isMissing);
    }
    playing_.feed->connect(*source_);
}

void SupervisedOutput::noteRendering() {
    const auto count = playing_.feed->renderCount();
    if (count != lastRenderCount_) {
        lastRenderCount_ = count;
        lastRenderAt_ = Clock::now();
    }
}

bool SupervisedOutput::isDead() const {
    return playing_.feed->hasEnded() || Clock::now() - lastRenderAt_ >= timing_.silence;
}

void SupervisedOutput::replaceStream() {
    OutputDevice& device = *playing_.device;
    const auto facts = playing_.stream->facts();
    // A stream that ended may have had no time to render.
    const bool isMute = playing_.feed->renderCount() == 0 && !playing_.feed->hasEnded();
    const bool hasLasted = !isMute && Clock::now() - openedAt_ >= timing_.retry;
    const bool replaceAtOnce = hasLasted || (!isMute && !replacedAtOnce_);
    endPlaying();
    if (hasLasted) {
        pauses_.erase(&device);
    } else if (!replaceAtOnce) {
        pause(device);
    }
    if (replaceAtOnce && open(device)) {
        g_warning("Audio output: %s stopped and was opened again, %s.", device.name().c_str(),
                  text(playing_.stream->facts()).c_str());
    } else if (replaceAtOnce && openAny(&device)) {
        g_warning("Audio output: %s went away; %s takes its place, %s.", device.name().c_str(),
                  playing_.device->name().c_str(), text(playing_.stream->facts()).c_str());
    } else {
        openClock({facts.format, facts.frameCount, ""});
        g_warning("Audio output: %s %s; a silent clock takes its place (%s).",
                  device.name().c_str(), isMute ? "does not play" : "went away",
                  text(playing_.stream->facts()).c_str());
    }
    replacedAtOnce_ = playing_.device != nullptr;
    connectSource();
}

void SupervisedOutput::returnToDevice() {
    // Keeps the clock playing, because probing and opening may need seconds.
    Playing clock = std::exchange(playing_, {});
    if (openOneThatRenders()) {
        clock.feed->disconnect();
        clock.stream.reset();
        {
            const std::lock_guard lock(facts_);
            earlierXruns_ += clock.feed->xrunCount();
        }
        g_warning("Audio output: %s takes the place of the silent clock, %s.",
                  playing_.device->name().c_str(), text(playing_.stream->facts()).c_str());
        replacedAtOnce_ = false;
        connectSource();
    } else {
        setPlaying(std::move(clock));
        retryAt_ = Clock::now() + timing_.retry;
    }
}

}  // namespace orvalo
