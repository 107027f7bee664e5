#include "platform/audio/bridge/host/BridgedAudioUnit.h"

#include <glib.h>

#include <utility>

#include "platform/audio/bridge/host/ControlRanges.h"
#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/lv2/LV2Error.h"
#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

namespace {

BridgedAudioUnit::PluginUIProvider& pluginUIProvider() {
    static BridgedAudioUnit::PluginUIProvider provider;
    return provider;
}

/// Somebody who asked for a unit's UI. Is answered on the main thread, even when the unit or
/// its process goes before it can answer, and let go of there: the supervisor's thread, which has
/// this meanwhile, must not be the one that lets go of what the completion holds, nor of the unit.
class PluginUIRequest {
  public:
    using Completion = std::function<void(std::shared_ptr<UIViewController>)>;

    PluginUIRequest(std::weak_ptr<BridgedAudioUnit> unit, Completion completion)
        : unit_(std::move(unit)), completion_(std::move(completion)) {}
    ~PluginUIRequest() {
        if (completion_) {
            answer(false);
        }
    }
    PluginUIRequest(const PluginUIRequest&) = delete;
    PluginUIRequest& operator=(const PluginUIRequest&) = delete;

    /// Once.
    void answer(bool hasPluginUI) {
        DispatchQueue::main()->async([hasPluginUI, weakUnit = std::move(unit_),
                                      completion = std::exchange(completion_, nullptr)] {
            const auto unit = hasPluginUI ? weakUnit.lock() : nullptr;
            completion(unit == nullptr ? nullptr : pluginUIProvider()(unit));
        });
    }

  private:
    std::weak_ptr<BridgedAudioUnit> unit_;
    Completion completion_;
};

LV2PluginData readData(LV2World& world, const std::string& uri) {
    const LV2World::Access access(world);
    return LV2PluginData::read(access, uri);
}

}  // namespace

BridgedAudioUnit::BridgedAudioUnit(LV2World& world, const std::string& uri,
                                   const AudioComponentDescription& description,
                                   const std::filesystem::path& program, const BridgeLimits& limits)
    : BridgedAudioUnit(world, readData(world, uri), description, program, limits) {
    supervisor_.start();
}

BridgedAudioUnit::BridgedAudioUnit(LV2World& world, LV2PluginData data,
                                   const AudioComponentDescription& description,
                                   const std::filesystem::path& program, const BridgeLimits& limits)
    : world_(world),
      data_(std::move(data)),
      description_(description),
      render_(static_cast<std::uint32_t>(data_.midiOutputNames.size()), limits),
      pluginUIChannel_(std::make_shared<PluginUIChannel>(
          [this](ServiceCommand command) { supervisor_.post(std::move(command)); })),
      supervisor_(order(program), limits, render_, *pluginUIChannel_) {}

ServiceOrder BridgedAudioUnit::order(const std::filesystem::path& program) {
    ServiceOrder order{
        .program = program,
        .uri = data_.uri,
        .bundles = world_.bundlesOf(data_.uri),
        .stateFolder = paths_.folder().string(),
        .layout = {data_.inputChannelCount, data_.outputChannelCount,
                   static_cast<std::uint32_t>(data_.ports.size())},
        .ranges = {},
    };
    const LV2World::Access access(world_);
    order.ranges = readControlRanges(access, data_);
    return order;
}

std::string BridgedAudioUnit::contextName() const {
    const std::scoped_lock lock(control_);
    return contextName_;
}

void BridgedAudioUnit::setContextName(const std::string& name) {
    const std::scoped_lock lock(control_);
    contextName_ = name;
    supervisor_.perform(bridge::SetContextName{.number = 0, .name = name});
}

std::vector<std::shared_ptr<AUAudioUnitPreset>> BridgedAudioUnit::factoryPresets() const {
    const std::scoped_lock lock(control_);
    return numbered(presets());
}

std::shared_ptr<AUAudioUnitPreset> BridgedAudioUnit::currentPreset() const {
    const std::scoped_lock lock(control_);
    return currentPreset_;
}

void BridgedAudioUnit::setCurrentPreset(const std::shared_ptr<AUAudioUnitPreset>& preset) {
    const std::scoped_lock lock(control_);
    currentPreset_ = nullptr;
    const auto* found = presetFor(presets(), preset);
    if (found == nullptr) {
        return;
    }
    const auto& uri = found->uri;
    const auto answer = supervisor_.perform(bridge::LoadPreset{.number = 0, .uri = uri});
    if (answer.kind == ServiceAnswer::Kind::done) {
        currentPreset_ = preset;
    } else if (answer.kind == ServiceAnswer::Kind::refused) {
        g_warning("The preset <%s> cannot be loaded: %s", uri.c_str(), answer.error.c_str());
    }
}

AUMIDIOutputEventBlock BridgedAudioUnit::MIDIOutputEventBlock() const {
    const std::scoped_lock lock(control_);
    const auto* block = render_.midiBlock();
    return block == nullptr ? AUMIDIOutputEventBlock() : *block;
}

void BridgedAudioUnit::setMIDIOutputEventBlock(AUMIDIOutputEventBlock block) {
    const std::scoped_lock lock(control_);
    render_.setMIDIBlock(block ? std::make_unique<AUMIDIOutputEventBlock>(std::move(block))
                               : nullptr);
}

void BridgedAudioUnit::requestViewController(
    std::function<void(std::shared_ptr<UIViewController>)> completion) {
    if (!pluginUIProvider()) {
        completion(nullptr);
        return;
    }
    const auto request = std::make_shared<PluginUIRequest>(weak(this), std::move(completion));
    supervisor_.post({bridge::LoadPluginUI{}, 0, [request](const ServiceAnswer& answer) {
                          const bool isRefused = answer.kind == ServiceAnswer::Kind::refused;
                          if (isRefused) {
                              g_warning("%s", answer.error.c_str());
                          }
                          request->answer(!isRefused);
                      }});
}

void BridgedAudioUnit::setPluginUIProvider(PluginUIProvider provider) {
    pluginUIProvider() = std::move(provider);
}

void BridgedAudioUnit::allocateRenderResources(double sampleRate) {
    const std::scoped_lock lock(control_);
    if (sampleRate != sampleRate_) {
        const auto answer =
            supervisor_.perform(bridge::Prepare{.number = 0, .sampleRate = sampleRate});
        if (answer.kind == ServiceAnswer::Kind::refused) {
            throw NSError("LV2", static_cast<std::int64_t>(LV2ErrorCode::instantiationFailed),
                          answer.error);
        }
        sampleRate_ = sampleRate;
    }
    render_.setSampleRate(sampleRate);
}

const std::vector<LV2Preset>& BridgedAudioUnit::presets() const {
    if (!presets_) {
        presets_ = findPresets(world_, data_.uri);
    }
    return *presets_;
}

}  // namespace orvalo
