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
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/audio/unit/AUAudioUnit.h"
#include "platform/audio/unit/AVAudioUnitComponent.h"
#include "platform/foundation/NSObject.h"

namespace orvalo {

class AUViewController;

/// Finds the application's effect in the component registry, instantiates it, connects it into the
/// engine and notifies its delegate. The search runs on the global queue and keeps the manager
/// alive. An error is printed and ends the search.
class AUExtensionManager : public NSObject {
  public:
    /// Never null.
    const std::shared_ptr<AUEnginePlayer> auEngine;

  private:
    const std::shared_ptr<AUExtensionManagerDelegate> delegate;
    /// The effect whose presets are listed. Never assigned.
    std::shared_ptr<AUAudioUnit> audioUnit;

  public:
    /// Reserved for the effect's view controller. Not used by the manager.
    std::shared_ptr<AUViewController> viewController;

  private:
    /// The effect's name in the registry. Not used by the search.
    const std::string componentName = "TSLY: Orvalo Extension";
    const AudioComponentDescription componentDescription = orvaloComponentDescription;
    /// The result of the last search.
    std::vector<std::shared_ptr<AVAudioUnitComponent>> _availableAudioUnits;

  public:
    /// The factory presets of audioUnit in its order; empty without it.
    std::vector<Preset> presets() const;
    /// The current preset of audioUnit; absent without it.
    std::optional<Preset> currentPreset() const;
    /// Sets or clears the current preset of audioUnit; does nothing without it.
    void setCurrentPreset(const std::optional<Preset>& preset);

    /// A new manager whose search has started. delegate: when it is null and an effect is found, a
    /// fatal error. engine: becomes auEngine. onNoEffect: called on a thread of the global queue
    /// when there is no effect, or it cannot be instantiated; may be empty.
    static std::shared_ptr<AUExtensionManager> init(
        std::shared_ptr<AUExtensionManagerDelegate> delegate,
        std::shared_ptr<AUEnginePlayer> engine = std::make_shared<AUEnginePlayer>(),
        std::function<void()> onNoEffect = {});

  private:
    AUExtensionManager(std::shared_ptr<AUExtensionManagerDelegate> owner,
                       std::shared_ptr<AUEnginePlayer> engine,
                       std::function<void()> noEffectHandler);

    virtual void loadForRelease();
    virtual void selectfoundComponent(const std::shared_ptr<AVAudioUnitComponent>& component,
                                      std::function<void()> completionHandler);
    virtual void log(const AudioComponentDescription& description);
    virtual void selectAudioUnitWithComponentDescription(
        const std::optional<AudioComponentDescription>& description,
        std::function<void()> completionHandler);
    virtual void onFoundComponent();

  public:
    /// Reserved for binding parameters to controls. Prints a warning without audioUnit.
    virtual void connectParametersToControls();
    /// Reads the registry again and searches as init() does, for an effect that was installed
    /// since. Only after the search has ended without an effect.
    void searchAgain();
    /// AUEnginePlayer::toggle().
    virtual bool togglePlayback();
    /// Stops playback and removes the effect from the engine. The last operation.
    virtual void cleanup();

  private:
    friend struct AUExtensionManagerPeer;  ///< For tests.

    void search();
    void reportNoEffect() const;
    void adopt(const std::shared_ptr<AVAudioUnit>& unit,
               const std::function<void()>& completionHandler);

    const std::function<void()> onNoEffect;
};

}  // namespace orvalo
