#include "platform/audio/bridge/host/BridgedAudioUnit.h"

#include <glib.h>
#include <sys/stat.h>

#include <chrono>
#include <future>
#include <utility>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/EffectCache.h"
#include "platform/audio/lv2/LV2Error.h"
#include "platform/audio/lv2/UserPresets.h"
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
            const auto unit = weakUnit.lock();
            const auto& provider = hasPluginUI ? LV2AudioUnit::pluginUIProvider()
                                               : LV2AudioUnit::substituteUIProvider();
            completion(unit == nullptr || !provider ? nullptr : provider(unit));
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
                                   const ExpectedRendering& rendering,
                                   std::vector<std::filesystem::path> writable, bool writesPresets,
                                   const LV2FullState& start)
    : LV2AudioUnit(world, uri, description),
      limits_(limits),
      sampleRate_(rendering.sampleRate),
      render_(midiBlock_, static_cast<std::uint32_t>(data().midiOutputNames.size()),
              data().inputChannelCount, limits),
      pluginUIChannel_(std::make_shared<PluginUIChannel>(
          [this](ServiceCommand command) { supervisor_.post(std::move(command)); })),
      supervisor_(order(program, rendering.frameCount, std::move(writable), writesPresets), limits,
                  render_, *pluginUIChannel_, firstState(rendering.sampleRate, start)) {
    supervisor_.start();
}

LastState BridgedAudioUnit::firstState(double sampleRate, const LV2FullState& start) const {
    LastState result{.sampleRate = sampleRate, .state = start.properties, .preset = start.preset};
    for (const auto& port : data().ports) {
        const auto saved = start.controls.find(port.symbol);
        if (saved != start.controls.end()) {
            result.takeControl(saved->second, port);
        }
    }
    return result;
}

std::optional<LV2FullState> BridgedAudioUnit::fullState() {
    const auto promise = std::make_shared<std::promise<std::optional<LastState>>>();
    auto answer = promise->get_future();
    supervisor_.post({bridge::SaveState{}, 0, [this, promise](const ServiceAnswer& given) {
                          const bool isLost = given.kind == ServiceAnswer::Kind::noService;
                          promise->set_value(isLost ? std::nullopt
                                                    : std::optional(supervisor_.lastState()));
                      }});
    if (answer.wait_for(std::chrono::seconds(1)) != std::future_status::ready) {
        return std::nullopt;
    }
    const auto last = answer.get();
    if (!last) {
        return std::nullopt;
    }
    LV2FullState result{.properties = last->state, .preset = last->preset};
    for (const auto& control : last->controls) {
        result.controls[data().ports[control.port].symbol] = control.value;
    }
    return result;
}

ServiceOrder BridgedAudioUnit::order(const std::filesystem::path& program, std::uint32_t quantum,
                                     std::vector<std::filesystem::path> writable,
                                     bool writesPresets) {
    const bool hasPluginUI = data().hasX11UI && pluginUIProvider() != nullptr;
    std::filesystem::path cache;
    if (hasPluginUI) {
        cache = effectCacheFolder(data().uri);
        // Without it the UI only opens more slowly.
        g_mkdir_with_parents(cache.c_str(), S_IRWXU);
        writable.push_back(cache);
    }
    if (hasPluginUI && writesPresets) {
        // The service sees it, read-only, only if it exists when the service starts.
        g_mkdir_with_parents(userPresetFolder().c_str(),
                             S_IRWXU | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH);
    }
    return {
        .program = program,
        .uri = data().uri,
        .places = {.bundles = world().bundlesOf(data().uri),
                   .scratch = paths_.folder().string(),
                   .writable = std::move(writable),
                   .hasPluginUI = hasPluginUI},
        .cache = cache,
        .layout = {data().inputChannelCount, data().outputChannelCount,
                   static_cast<std::uint32_t>(data().ports.size())},
        .ports = data().ports,
        .quantum = quantum,
        .writesPresets = hasPluginUI && writesPresets,
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

void BridgedAudioUnit::startAgain() {
    supervisor_.restart();
    std::optional<double> missed;
    {
        const std::scoped_lock lock(rates_);
        if (preparation_ != nullptr && preparation_->answer &&
            preparation_->answer->kind == ServiceAnswer::Kind::noService) {
            missed = preparation_->sampleRate;
        }
    }
    if (missed) {
        requestSampleRate(*missed, false);
    }
}

void BridgedAudioUnit::allocateRenderResources(double sampleRate) {
    supervisor_.restart();
    render_.setSampleRate(sampleRate);
    if (hasSampleRate(sampleRate)) {
        render_.setPrepared(true);
        return;
    }
    const auto preparation = requestSampleRate(sampleRate, true);
    std::unique_lock lock(rates_);
    const auto isAnswered = [&preparation] { return preparation->answer.has_value(); };
    if (render_.isOffline()) {
        answered_.wait(lock, isAnswered);
    } else if (!answered_.wait_for(lock, limits_.prepare, isAnswered)) {
        preparation->isAwaited = false;
        g_warning("The effect <%s> is not ready for %.0f Hz after %s; playback is dry until it is.",
                  data().uri.c_str(), sampleRate, durationText(limits_.prepare).c_str());
        return;
    }
    if (preparation->answer->kind == ServiceAnswer::Kind::refused) {
        // The service keeps its rate.
        render_.setPrepared(true);
        throw NSError("LV2", static_cast<std::int64_t>(LV2ErrorCode::instantiationFailed),
                      preparation->answer->error);
    }
}

bool BridgedAudioUnit::hasSampleRate(double sampleRate) {
    const std::scoped_lock lock(rates_);
    return sampleRate == sampleRate_ && (preparation_ == nullptr || preparation_->answer);
}

std::shared_ptr<BridgedAudioUnit::Preparation> BridgedAudioUnit::requestSampleRate(
    double sampleRate, bool isAwaited) {
    auto preparation =
        std::make_shared<Preparation>(Preparation{sampleRate, isAwaited, std::nullopt});
    {
        const std::scoped_lock lock(rates_);
        preparation_ = preparation;
        render_.setPrepared(false);
    }
    supervisor_.post(
        {bridge::Prepare{.number = 0, .sampleRate = sampleRate}, 0,
         [this, preparation](const ServiceAnswer& answer) { finish(*preparation, answer); }});
    return preparation;
}

void BridgedAudioUnit::finish(Preparation& preparation, const ServiceAnswer& answer) {
    {
        const std::scoped_lock lock(rates_);
        preparation.answer = answer;
        if (answer.kind == ServiceAnswer::Kind::done) {
            sampleRate_ = preparation.sampleRate;
            render_.setPrepared(&preparation == preparation_.get());
        } else if (answer.kind == ServiceAnswer::Kind::refused && !preparation.isAwaited) {
            g_warning("%s", answer.error.c_str());
        }
    }
    answered_.notify_all();
}

}  // namespace orvalo
