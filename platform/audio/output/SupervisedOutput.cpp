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

constexpr auto kErrorDomain = "AudioOutputErrorDomain";

/// "48000 Hz, 2 channels, 64 frames".
std::string text(const OutputFacts& facts) {
    const auto channels = facts.format.channelCount;
    return std::to_string(std::llround(facts.format.sampleRate)) + " Hz, " +
           std::to_string(channels) + (channels == 1 ? " channel, " : " channels, ") +
           std::to_string(facts.frameCount) + " frames";
}

/// What the device has, or else why there is nothing, as the end of a sentence.
std::optional<OutputFacts> lookAt(OutputDevice& device, std::string& failure) {
    std::optional<OutputFacts> facts;
    try {
        facts = device.look();
        failure = facts ? "" : device.absence();
    } catch (const std::system_error& error) {
        // Looks are made on threads of their own, which a system at its limits refuses.
        failure = "it cannot be looked for (" + error.code().message() + ")";
    }
    if (!facts) {
        g_debug("Audio output %s: %s.", device.name().c_str(), failure.c_str());
    }
    return facts;
}

}  // namespace

SupervisedOutput::SupervisedOutput(std::vector<std::unique_ptr<OutputDevice>> devices,
                                   Absence absence, const Timing& timing)
    : devices_(std::move(devices)),
      absence_(absence),
      timing_(timing),
      wakeup_(std::make_shared<Wakeup>()) {}

SupervisedOutput::~SupervisedOutput() {
    stop();
}

AVAudioFormat SupervisedOutput::format() {
    {
        const std::lock_guard lock(facts_);
        if (toldFormat_) {
            return *toldFormat_;
        }
    }
    const auto facts = lookAround().value_or(OutputFacts{});
    const std::lock_guard lock(facts_);
    if (!toldFormat_) {
        toldFormat_ = facts.format;
    }
    return *toldFormat_;
}

void SupervisedOutput::start(AudioOutputSource& source) {
    if (source_ != nullptr) {
        fatalError("AudioOutput: started while it plays.");
    }
    {
        const std::lock_guard lock(facts_);
        countedGate_.reset();
        earlierXruns_ = 0;
    }
    if (openAny(nullptr)) {
        g_message("Audio output: %s, %s.", playing_.device->name().c_str(),
                  text(playing_.stream->facts()).c_str());
    } else if (absence_ == Absence::fail) {
        throw NSError(kErrorDomain, 1,
                      "The audio output " + devices_.front()->name() +
                          " cannot be opened: " + lastFailure_ + ".");
    } else {
        openClock({});
        g_message(devices_.empty()
                      ? "Audio output: a silent clock (%s)."
                      : "Audio output: none found; a silent clock takes its place (%s).",
                  text(playing_.stream->facts()).c_str());
    }
    source_ = &source;
    stopping_ = false;
    replacedAtOnce_ = false;
    thread_ = std::thread([this] { supervise(); });
}

void SupervisedOutput::stop() {
    if (source_ == nullptr) {
        return;
    }
    stopping_ = true;
    wakeup_->signal();
    thread_.join();
    endPlaying();
    source_ = nullptr;
}

std::uint64_t SupervisedOutput::xrunCount() const {
    const std::lock_guard lock(facts_);
    return earlierXruns_ + (countedGate_ ? countedGate_->xrunCount() : 0);
}

std::optional<OutputFacts> SupervisedOutput::lookAround() {
    for (const auto& device : devices_) {
        std::string failure;
        if (auto facts = lookAt(*device, failure)) {
            return facts;
        }
    }
    return std::nullopt;
}

bool SupervisedOutput::open(OutputDevice& device) {
    const auto facts = lookAt(device, lastFailure_);
    if (!facts) {
        return false;
    }
    try {
        auto gate = std::make_shared<RenderGate>(wakeup_);
        auto stream = device.open(*facts, gate);
        setPlaying({&device, std::move(gate), std::move(stream)});
        return true;
    } catch (const NSError& error) {
        lastFailure_ = error.what();
        g_debug("Audio output %s: %s.", device.name().c_str(), lastFailure_.c_str());
        return false;
    }
}

bool SupervisedOutput::openAny(const OutputDevice* except) {
    return std::any_of(devices_.begin(), devices_.end(),
                       [&](const auto& device) { return device.get() != except && open(*device); });
}

void SupervisedOutput::openClock(const OutputFacts& facts) {
    auto gate = std::make_shared<RenderGate>(wakeup_);
    auto stream = std::make_unique<ClockStream>(facts, gate);
    setPlaying({nullptr, std::move(gate), std::move(stream)});
}

void SupervisedOutput::setPlaying(Playing playing) {
    playing_ = std::move(playing);
    openedAt_ = lastRenderAt_ = Clock::now();
    lastRenderCount_ = 0;
    const std::lock_guard lock(facts_);
    countedGate_ = playing_.gate;
}

void SupervisedOutput::endPlaying() {
    playing_.gate->close();
    playing_.stream.reset();
    const std::lock_guard lock(facts_);
    earlierXruns_ += playing_.gate->xrunCount();
    countedGate_.reset();
}

void SupervisedOutput::supervise() {
    pthread_setname_np(pthread_self(), "orvalo-output");
    letRender();
    while (!stopping_) {
        wakeup_->wait(timing_.watch);
        if (stopping_) {
            return;
        }
        if (playing_.device == nullptr) {
            if (!devices_.empty() && Clock::now() - openedAt_ >= timing_.retry) {
                returnToDevice();
            }
        } else if (hasDied()) {
            replaceStream();
        }
    }
}

void SupervisedOutput::letRender() {
    const auto format = playing_.stream->facts().format;
    bool changed = false;
    {
        const std::lock_guard lock(facts_);
        changed = toldFormat_ && *toldFormat_ != format;
        toldFormat_ = format;
    }
    if (changed) {
        source_->outputFormatChanged(format);
    }
    playing_.gate->open(*source_);
}

bool SupervisedOutput::hasDied() {
    if (playing_.gate->hasEnded()) {
        return true;
    }
    const auto count = playing_.gate->renderCount();
    const auto now = Clock::now();
    if (count != lastRenderCount_) {
        lastRenderCount_ = count;
        lastRenderAt_ = now;
    }
    return now - lastRenderAt_ >= timing_.silence;
}

void SupervisedOutput::replaceStream() {
    OutputDevice& device = *playing_.device;
    const auto facts = playing_.stream->facts();
    const bool replaceAtOnce = !replacedAtOnce_ || Clock::now() - openedAt_ >= timing_.retry;
    endPlaying();
    if (replaceAtOnce && open(device)) {
        g_warning("Audio output: %s stopped and was opened again, %s.", device.name().c_str(),
                  text(playing_.stream->facts()).c_str());
    } else if (replaceAtOnce && openAny(&device)) {
        g_warning("Audio output: %s went away; %s takes its place, %s.", device.name().c_str(),
                  playing_.device->name().c_str(), text(playing_.stream->facts()).c_str());
    } else {
        openClock({facts.format, facts.frameCount, ""});
        g_warning("Audio output: %s went away; a silent clock takes its place (%s).",
                  device.name().c_str(), text(playing_.stream->facts()).c_str());
    }
    replacedAtOnce_ = playing_.device != nullptr;
    letRender();
}

void SupervisedOutput::returnToDevice() {
    // The clock goes on while a device is looked for: a look and an opening may take their time.
    Playing clock = std::exchange(playing_, {});
    if (openAny(nullptr)) {
        clock.gate->close();
        clock.stream.reset();
        {
            const std::lock_guard lock(facts_);
            earlierXruns_ += clock.gate->xrunCount();
        }
        g_warning("Audio output: %s takes the place of the silent clock, %s.",
                  playing_.device->name().c_str(), text(playing_.stream->facts()).c_str());
        replacedAtOnce_ = false;
        letRender();
    } else {
        setPlaying(std::move(clock));
    }
}

}  // namespace orvalo
