#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Audio Engine/AUEnginePlayer.h"
#include "hosting/AUExtensionManagerDelegate.h"
#include "hosting/OrvaloComponent.h"
#include "hosting/Preset.h"
#include "platform/audio/component/AVAudioUnitComponent.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/audio/unit/AUAudioUnit.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

class AUViewController;

/// Finds the application's one effect in the component registry, makes an instance, has the engine
/// connect it, and tells its delegate. The search runs on the global queue and holds the manager;
/// what goes wrong on its way is printed and ends it. Held by std::shared_ptr.
class AUExtensionManager : public NSObject {
  public:
    /// The engine: made with the manager, never replaced.
    const std::shared_ptr<AUEnginePlayer> auEngine;

  private:
    const std::shared_ptr<AUExtensionManagerDelegate> delegate;
    /// The unit whose presets are offered. Nothing assigns it.
    std::shared_ptr<AUAudioUnit> audioUnit;

  public:
    /// A place for the effect's view controller. The manager leaves it alone.
    std::shared_ptr<AUViewController> viewController;

  private:
    /// The effect's name in the registry, which the search does without.
    const std::string componentName = "TSLY: Orvalo Extension";
    const AudioComponentDescription componentDescription = orvaloComponentDescription;
    /// What the last search found.
    std::vector<std::shared_ptr<AVAudioUnitComponent>> _availableAudioUnits;

  public:
    /// The factory presets of the unit in its order; none without a unit.
    std::vector<Preset> presets() const;
    /// The unit's current preset; absent without a unit.
    std::optional<Preset> currentPreset() const;
    /// Sets the unit's current preset, or none; does nothing without a unit.
    void setCurrentPreset(const std::optional<Preset>& preset);

    /// A manager whose search has started. delegate: absent only where no effect can be found;
    /// an effect that is connected without a delegate is a fatal error. engine: to be its auEngine.
    static std::shared_ptr<AUExtensionManager> init(
        std::shared_ptr<AUExtensionManagerDelegate> delegate,
        std::shared_ptr<AUEnginePlayer> engine = std::make_shared<AUEnginePlayer>());

  private:
    AUExtensionManager(std::shared_ptr<AUExtensionManagerDelegate> owner,
                       std::shared_ptr<AUEnginePlayer> engine);

    virtual void loadForRelease();
    virtual void selectfoundComponent(const std::shared_ptr<AVAudioUnitComponent>& component,
                                      std::function<void()> completionHandler);
    virtual void log(const AudioComponentDescription& description);
    virtual void selectAudioUnitWithComponentDescription(
        const std::optional<AudioComponentDescription>& description,
        std::function<void()> completionHandler);
    virtual void onFoundComponent();

  public:
    /// Where the unit's parameters get bound to controls; prints a warning without a unit.
    virtual void connectParametersToControls();
    /// Starts or stops playback; whether it plays then. As AUEnginePlayer::toggle().
    virtual bool togglePlayback();
    /// The manager's end of life: stops playback and takes the effect out of the engine.
    virtual void cleanup();

  private:
    friend struct AUExtensionManagerPeer;  ///< The tests' view of the private parts.

    void search();
    void adopt(const std::shared_ptr<AVAudioUnit>& unit,
               const std::function<void()>& completionHandler);
};

}  // namespace orvalo
