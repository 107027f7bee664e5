#include "platform/audio/engine/AVAudioUnit.h"

#include <glib.h>

#include <algorithm>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/audio/component/AVAudioUnitComponentManager.h"
#include "platform/audio/engine/EffectLoading.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "platform/audio/signal/MapChannels.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DefaultsFolder.h"
#include "platform/foundation/defaults/DefaultsPlaces.h"

namespace orvalo {

namespace {

/// A buffer for an effect's channels, of which there may be none.
AVAudioPCMBuffer makeBuffer(std::uint32_t channels, std::uint32_t frames) {
    return {AVAudioFormat{.channelCount = std::max(channels, 1U)}, frames};
}

EffectLoading loading(AudioComponentInstantiationOptions options) {
    return options == AudioComponentInstantiationOptions::loadInProcess ? EffectLoading::inProcess
                                                                        : platformEffectLoading();
}

/// Whether the main bundle names the effect's manufacturer as one of its group.
bool isOfGroup(const AVAudioUnitComponent& component) {
    const auto manufacturer = Bundle::main()->infoValue("GroupManufacturer");
    return manufacturer && fourCharCode(*manufacturer) == component.statedManufacturer;
}

/// The folder of the group's settings, for the effects of the group. The database in it has more
/// files than one.
std::vector<std::filesystem::path> groupFolders(const AVAudioUnitComponent& component) {
    const auto group = Bundle::main()->infoValue("Group");
    if (!group || !isOfGroup(component)) {
        return {};
    }
    const auto folder = suiteFile(*group).parent_path();
    try {
        makePrivateFolder(folder);
    } catch (const NSError& error) {
        g_warning("The effect cannot use the settings that it shares with the application: %s.",
                  error.what());
    }
    return {folder};
}

std::shared_ptr<AUAudioUnit> makeUnit(const AVAudioUnitComponent& component, EffectLoading where) {
    const auto& uri = component.uri;
    const auto& description = component.audioComponentDescription;
    auto& world = LV2World::shared();
    if (where == EffectLoading::inProcess) {
        return std::make_shared<LV2LocalAudioUnit>(world, uri, description,
                                                   LV2UnitStart{.rendering = expectedRendering()});
    }
    const auto& memory = effectMemory();
    const auto make = [&](const LV2FullState& start) {
        return std::make_shared<BridgedAudioUnit>(
            world, uri, description, Bundle::main()->helperURL("effect-service").path(),
            BridgeLimits{}, expectedRendering(), groupFolders(component), isOfGroup(component),
            start);
    };
    const auto recalled = memory.recall ? memory.recall(uri) : std::nullopt;
    std::shared_ptr<BridgedAudioUnit> unit;
    if (recalled) {
        try {
            unit = make(*recalled);
        } catch (const NSError& error) {
            g_warning(
                "The effect <%s> does not start from its saved state; it starts with its "
                "default: %s",
                uri.c_str(), error.what());
        }
    }
    if (unit == nullptr) {
        unit = make({});
    }
    if (memory.made) {
        memory.made(unit);
    }
    return unit;
}

}  // namespace

/// Renders the unit between connections whose channels may differ from its own.
class AVAudioUnit::Kernel : public RenderKernel {
  public:
    explicit Kernel(std::shared_ptr<AUAudioUnit> unit)
        : unit_(std::move(unit)),
          inputChannels_(unit_->inputChannelCount()),
          outputChannels_(unit_->outputChannelCount()),
          input_(makeBuffer(inputChannels_, unit_->maximumFramesToRender())),
          output_(makeBuffer(outputChannels_, unit_->maximumFramesToRender())) {}

    /// After a change of the unit's maximumFramesToRender(). Never during render().
    void resizeBuffers() {
        input_ = makeBuffer(inputChannels_, unit_->maximumFramesToRender());
        output_ = makeBuffer(outputChannels_, unit_->maximumFramesToRender());
    }

    void render(const AudioBlock& input, const AudioBlock& output) noexcept override {
        AudioBlock unitInput = input;
        if (input.channelCount != inputChannels_) {
            unitInput = {input_.floatChannelData(), inputChannels_, input.frameCount};
            mapChannels(input, unitInput);
        }
        if (output.channelCount == outputChannels_) {
            unit_->render(unitInput, output);
            return;
        }
        const AudioBlock unitOutput{output_.floatChannelData(), outputChannels_, input.frameCount};
        unit_->render(unitInput, unitOutput);
        mapChannels(unitOutput, output);
    }

  private:
    const std::shared_ptr<AUAudioUnit> unit_;
    const std::uint32_t inputChannels_;
    const std::uint32_t outputChannels_;
    AVAudioPCMBuffer input_;
    AVAudioPCMBuffer output_;
};

AVAudioUnit::AVAudioUnit(std::shared_ptr<AUAudioUnit> unit)
    : auAudioUnit_(std::move(unit)), kernel_(std::make_shared<Kernel>(auAudioUnit_)) {}

AVAudioUnit::~AVAudioUnit() = default;

void AVAudioUnit::instantiate(const AudioComponentDescription& with,
                              AudioComponentInstantiationOptions options,
                              InstantiationHandler completionHandler) {
    DispatchQueue::global()->async([with, options, completion = std::move(completionHandler)] {
        std::shared_ptr<AVAudioUnit> unit;
        std::optional<NSError> failure;
        try {
            unit = instantiate(with, options);
        } catch (const NSError& error) {
            g_warning("%s", error.what());
            failure = error;
        }
        completion(unit, failure);
    });
}

std::shared_ptr<AVAudioUnit> AVAudioUnit::instantiate(const AudioComponentDescription& with,
                                                      AudioComponentInstantiationOptions options) {
    const auto components =
        AVAudioUnitComponentManager::sharedAudioUnitComponentManager()->components(with);
    if (components.empty()) {
        throw NSError("AVAudioUnit", 1, "No component matches " + orvalo::description(with));
    }
    const auto& component = components.front();
    return std::make_shared<AVAudioUnit>(makeUnit(*component, loading(options)));
}

AVAudioFormat AVAudioUnit::derivedFormat(const AVAudioFormat* input,
                                         const AVAudioFormat& engineFormat) const {
    return {(input != nullptr ? *input : engineFormat).sampleRate,
            std::max(auAudioUnit_->outputChannelCount(), 1U)};
}

void AVAudioUnit::prepareToRender(const AVAudioFormat* input, const AVAudioFormat& output) {
    if (input != nullptr && input->sampleRate != output.sampleRate) {
        throw NSError("AVAudioUnit", 2,
                      "An effect cannot convert from " + std::to_string(input->sampleRate) +
                          " Hz to " + std::to_string(output.sampleRate) + " Hz.");
    }
    auAudioUnit_->allocateRenderResources(output.sampleRate);
}

void AVAudioUnit::setRenderingOffline(bool isOffline) {
    auAudioUnit_->setRenderingOffline(isOffline);
    kernel_->resizeBuffers();
}

std::shared_ptr<RenderKernel> AVAudioUnit::kernel() const {
    return kernel_;
}

}  // namespace orvalo
