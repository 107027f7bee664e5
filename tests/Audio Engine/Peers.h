#pragma once

#include "Audio Engine/AUEnginePlayer.h"
#include "hosting/AUExtensionManager.h"

namespace orvalo {

/// Access to the private members of an AUEnginePlayer.
struct AUEnginePlayerPeer {
    AUEnginePlayer& player;

    auto& engine() const { return player.engine; }
    auto& node() const { return player.player; }
    auto& queue() const { return player.stateChangeQueue; }
    auto& midiOutBlock() const { return player.midiOutBlock; }
    auto& activeAVAudioUnit() const { return player.activeAVAudioUnit; }
    auto& file() const { return player.file; }
    auto& fileURL() const { return player.fileURL; }
    auto& isPlaying() const { return player.isPlaying; }
    auto& loopCount() const { return player.loopCount; }

    void randomizeFile() const { player.randomizeFile(); }
    void setSessionActive(bool active) const { player.setSessionActive(active); }
    void startPlayingInternal() const { player.startPlayingInternal(); }
    void scheduleEffectLoop() const { player.scheduleEffectLoop(); }
    void resetAudioLoop() const { player.resetAudioLoop(); }
    void countPass() const { player.countPass(); }
};

/// Access to the private members of an AUExtensionManager.
struct AUExtensionManagerPeer {
    AUExtensionManager& manager;

    auto& audioUnit() const { return manager.audioUnit; }
    auto& componentName() const { return manager.componentName; }
    auto& componentDescription() const { return manager.componentDescription; }
    auto& availableAudioUnits() const { return manager._availableAudioUnits; }

    void log(const AudioComponentDescription& description) const { manager.log(description); }
    void select(const std::shared_ptr<AVAudioUnitComponent>& component,
                std::function<void()> completion) const {
        manager.selectfoundComponent(component, std::move(completion));
    }
    void select(const std::optional<AudioComponentDescription>& description,
                std::function<void()> completion) const {
        manager.selectAudioUnitWithComponentDescription(description, std::move(completion));
    }
    void onFoundComponent() const { manager.onFoundComponent(); }
};

}  // namespace orvalo
