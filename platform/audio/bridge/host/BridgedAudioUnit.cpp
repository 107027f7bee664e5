#include "platform/audio/bridge/host/BridgedAudioUnit.h"

#include <glib.h>

#include <utility>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/lv2/LV2Error.h"
#include "platform/foundation/DispatchQueue.h"

namespace orvalo {

namespace {

/// A request for a unit's UI. Runs and destroys the completion on the main thread, also when the
/// unit or its service ends first. Holds the unit weakly, because the supervisor's thread holds
/// this object and must not destroy the unit.
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

    /// Requests the view controller, or passes null. Call at most once.
    void answer(bool hasPluginUI) {
        DispatchQueue::main()->async([hasPluginUI, weakUnit = std::move(unit_),
                                      completion = std::exchange(completion_, nullptr)] {
            const auto unit = hasPluginUI ? weakUnit.lock() : nullptr;
            completion(unit == nullptr ? nullptr : LV2AudioUnit::pluginUIProvider()(unit));
        });
    }

  private:
    std::weak_ptr<BridgedAudioUnit> unit_;
    Completion completion_;
};

}  // namespace

BridgedAudioUnit::BridgedAudioUnit(LV2World& world, const std::string& uri,
                                   const AudioComponentDescription& description,
                                   const std::filesystem::path& program, const BridgeLimits& limits,
                                   std::vector<std::filesystem::path> writable)
    : LV2AudioUnit(world, uri, description),
      render_(midiBlock_, static_cast<std::uint32_t>(data().midiOutputNames.size()), limits),
      pluginUIChannel_(std::make_shared<PluginUIChannel>(
          [this](ServiceCommand command) { supervisor_.post(std::move(command)); })),
      supervisor_(order(program, std::move(writable)), limits, render_, *pluginUIChannel_) {
    supervisor_.start();
}

ServiceOrder BridgedAudioUnit::order(const std::filesystem::path& program,
                                     std::vector<std::filesystem::path> writable) {
    return {
        .program = program,
        .uri = data().uri,
        .places = {.bundles = world().bundlesOf(data().uri),
                   .scratch = paths_.folder().string(),
                   .writable = std::move(writable),
                   .hasPluginUI = data().hasX11UI && pluginUIProvider() != nullptr},
        .layout = {data().inputChannelCount, data().outputChannelCount,
                   static_cast<std::uint32_t>(data().ports.size())},
        .ports = data().ports,
    };
}

void BridgedAudioUnit::applyContextName(const std::string& name) {
    supervisor_.perform(bridge::SetContextName{.number = 0, .name = name});
}

bool BridgedAudioUnit::loadPreset(const LV2Preset& preset) {
    const auto answer = supervisor_.perform(bridge::LoadPreset{.number = 0, .uri = preset.uri});
    if (answer.kind == ServiceAnswer::Kind::refused) {
        g_warning("The preset <%s> is not loaded: %s", preset.uri.c_str(), answer.error.c_str());
    }
    return answer.kind == ServiceAnswer::Kind::done;
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

}  // namespace orvalo
