#include "platform/audio/lv2/LV2LocalAudioUnit.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

#include "platform/audio/lv2/URIDMap.h"
#include "platform/audio/signal/MapChannels.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/RealTimeScope.h"

namespace orvalo {

namespace {

/// Sets the samples that are NaN or infinite to 0. Returns whether there were any.
bool silenceNonFinite(const AudioBlock& block) noexcept {
    constexpr std::uint32_t kExponent = 0x7F800000;
    bool found = false;
    for (std::uint32_t channel = 0; channel < block.channelCount; ++channel) {
        float* samples = block.channels[channel];
        // Without a branch, so that the compiler makes vector instructions of it.
        std::uint32_t isFound = 0;
        for (std::uint32_t frame = 0; frame < block.frameCount; ++frame) {
            const auto bits = std::bit_cast<std::uint32_t>(samples[frame]) & kExponent;
            isFound |= static_cast<std::uint32_t>(bits == kExponent);
        }
        if (isFound != 0) {
            std::replace_if(
                samples, samples + block.frameCount,
                [](float sample) { return !std::isfinite(sample); }, 0.0F);
            found = true;
        }
    }
    return found;
}

}  // namespace

LV2LocalAudioUnit::LV2LocalAudioUnit(LV2World& world, const std::string& uri,
                                     const AudioComponentDescription& description,
                                     const LV2UnitStart& start)
    : LV2AudioUnit(world, uri, description, start.contextName),
      parts_(world, data(), start.filesFolder, start.rendering.frameCount) {
    const double sampleRate = start.rendering.sampleRate;
    auto instance = std::make_unique<LV2Instance>(parts_, sampleRate, contextName_);
    origin_.properties = start.state;
    if (!start.state && data().hasDefaultState) {
        origin_.state = readState(world, uri);
    }
    origin_.restore(*instance);
    // Only now, because a default state, like the plug-in's data, does not multiply values by the
    // rate.
    parts_.controls.setSampleRate(sampleRate);
    instance->activate();
    instance_.exchange(std::move(instance));
}

void LV2LocalAudioUnit::applyContextName(const std::string& name) {
    if (instance_.current()->takesOptions()) {
        whileNotRunning([&name](LV2Instance& instance) { instance.setContextName(name); });
    }
}

bool LV2LocalAudioUnit::loadPreset(const LV2Preset& preset) {
    auto state = readState(world(), preset.uri);
    if (state == nullptr) {
        return false;
    }
    restore(*state);
    origin_.preset = std::move(state);
    return true;
}

void LV2LocalAudioUnit::requestViewController(
    std::function<void(std::shared_ptr<UIViewController>)> completion) {
    if (!pluginUIProvider()) {
        completion(nullptr);
        return;
    }
    DispatchQueue::main()->async(
        [unit = shared(this), completion = std::move(completion)]() mutable {
            completion(pluginUIProvider()(unit));
        });
}

double LV2LocalAudioUnit::sampleRate() const {
    const std::scoped_lock lock(control_);
    return instance_.current()->sampleRate();
}

bool LV2LocalAudioUnit::keepsState() const {
    const std::scoped_lock lock(control_);
    return instance_.current()->keepsState();
}

bool LV2LocalAudioUnit::hasRun() const {
    const std::scoped_lock lock(control_);
    return instance_.current()->hasRun();
}

LV2StateProperties LV2LocalAudioUnit::stateProperties() const {
    const std::scoped_lock lock(control_);
    return instance_.current()->saveProperties();
}

LV2LocalAudioUnit::InstanceAccess LV2LocalAudioUnit::connectPluginUI(
    const std::shared_ptr<LV2EventLink>& link) {
    const std::scoped_lock lock(control_);
    auto links = links_.current() == nullptr ? LV2EventLinks() : *links_.current();
    links.push_back(link);
    setLinks(std::move(links));
    const auto& instance = *instance_.current();
    return {instance.handle(), instance.descriptor(), instanceNumber()};
}

void LV2LocalAudioUnit::disconnectPluginUI(const std::shared_ptr<LV2EventLink>& link) {
    const std::scoped_lock lock(control_);
    auto links = links_.current() == nullptr ? LV2EventLinks() : *links_.current();
    links.erase(std::remove(links.begin(), links.end(), link), links.end());
    setLinks(std::move(links));
}

void LV2LocalAudioUnit::setLinks(LV2EventLinks links) {
    if (links.empty()) {
        links_.exchange(nullptr);
        retired_.clear();
    } else {
        links_.exchange(std::make_unique<LV2EventLinks>(std::move(links)));
    }
}

void LV2LocalAudioUnit::allocateRenderResources(double sampleRate) {
    const std::scoped_lock lock(control_);
    const auto& previous = *instance_.current();
    if (previous.sampleRate() == sampleRate) {
        return;
    }
    auto origin = previous.hasRun() ? Origin{.state = previous.save()} : origin_;
    auto instance = std::make_unique<LV2Instance>(parts_, sampleRate, contextName_);
    // The values that were set since are kept.
    const auto controls = parts_.controls.inputValues();
    origin.restore(*instance);
    parts_.controls.setInputValues(controls);
    parts_.controls.setSampleRate(sampleRate);
    origin_ = std::move(origin);
    instance->activate();
    auto replaced = instance_.exchange(std::move(instance));
    replaced->deactivate();
    if (links_.current() != nullptr) {
        retired_.push_back(std::move(replaced));
    }
    instanceNumber_.fetch_add(1, std::memory_order_release);
    latency_.store(0, std::memory_order_relaxed);
}

void LV2LocalAudioUnit::render(const AudioBlock& input, const AudioBlock& output) noexcept {
    const RealTimeScope scope;
    if (renderAndSilence(input, output) && !std::exchange(hasWarned_, true)) {
        parts_.log.write(LV2URIDs::shared().logWarning, kSilenced);
    }
}

bool LV2LocalAudioUnit::renderAndSilence(const AudioBlock& input,
                                         const AudioBlock& output) noexcept {
    const RealTimeScope scope;
    if (output.frameCount == 0) {
        return false;
    }
    bool isSilenced = false;
    const RenderSlot<LV2Instance>::Access instance(instance_);
    if (instance) {
        const RenderSlot<AUMIDIOutputEventBlock>::Access block(midiBlock_);
        const RenderSlot<LV2EventLinks>::Access links(links_);
        auto& process = instance->process();
        process.run(input, output, sampleTime_, block ? &*block : nullptr,
                    links ? &*links : nullptr);
        latency_.store(process.latency(), std::memory_order_relaxed);
        isSilenced = silenceNonFinite(output);
    } else {
        mapChannels(input, output);
    }
    sampleTime_ += output.frameCount;
    return isSilenced;
}

void LV2LocalAudioUnit::Origin::restore(LV2Instance& instance) const {
    if (properties) {
        instance.restore(*properties);
    }
    for (const auto& each : {state, preset}) {
        if (each != nullptr) {
            instance.restore(*each);
        }
    }
}

void LV2LocalAudioUnit::restore(const LilvState& state) {
    if (data().hasThreadSafeRestore) {
        instance_.current()->restore(state);
    } else {
        whileNotRunning([&state](LV2Instance& instance) { instance.restore(state); });
    }
}

void LV2LocalAudioUnit::whileNotRunning(const std::function<void(LV2Instance&)>& work) {
    // Returns the instance also when the plug-in throws.
    struct Loan {
        RenderSlot<LV2Instance>& slot;
        std::unique_ptr<LV2Instance> instance = slot.exchange(nullptr);
        ~Loan() { slot.exchange(std::move(instance)); }
    } loan{instance_};
    work(*loan.instance);
}

}  // namespace orvalo
