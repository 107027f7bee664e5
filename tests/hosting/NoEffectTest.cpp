#include <atomic>
#include <future>

#include "platform/foundation/DispatchQueue.h"
#include "tests/Audio Engine/PlayerLines.h"
#include "tests/hosting/ManagerFixture.h"
#include "tests/testing/WaitUntil.h"

// This program's registry is empty.
namespace orvalo::testing {
namespace {

const std::string kNoneFound = "ERROR: There were no audio units found.";

class NoEffect : public ManagerFixture {
  protected:
    NoEffect() : ManagerFixture(ORVALO_PLAYER_LV2_PATH) {}

    /// A manager whose search has failed.
    AUExtensionManagerPeer searched() {
        makeManager();
        newLines();
        return {*manager};
    }
};

TEST_F(NoEffect, EndsTheSearchWithItsLine) {
    makeManager();
    EXPECT_EQ(newLines(), Lines({kNote, kNoneFound}));
    EXPECT_TRUE(AUExtensionManagerPeer{*manager}.availableAudioUnits().empty());
}

TEST_F(NoEffect, SearchesOnTheGlobalQueue) {
    // While all threads of the global queue are busy, the search has to wait.
    constexpr int threads = 64;
    std::promise<void> release;
    const auto released = release.get_future().share();
    std::atomic<int> busy = 0;
    for (int thread = 0; thread < threads; ++thread) {
        DispatchQueue::global()->async([&busy, released] {
            ++busy;
            released.wait();
        });
    }
    ASSERT_TRUE(pollUntil([&busy] { return busy == threads; }));
    manager = AUExtensionManager::init(delegate, player);
    EXPECT_EQ(newLines(), Lines({kNote}));
    release.set_value();
    serveMainQueueUntilPrinted(output, kNoneFound);
    EXPECT_EQ(newLines(), Lines({kNoneFound}));
}

TEST_F(NoEffect, NeedsNoDelegate) {
    delegate = nullptr;
    makeManager();
    EXPECT_EQ(newLines(), Lines({kNote, kNoneFound}));
}

TEST_F(NoEffect, TheSearchKeepsTheManagerAlive) {
    const std::weak_ptr<AUExtensionManager> kept = AUExtensionManager::init(delegate, player);
    serveMainQueueUntilPrinted(output, kNoneFound);
    EXPECT_TRUE(pollUntil([&kept] { return kept.expired(); }));
}

TEST_F(NoEffect, HasTheGivenProperties) {
    const auto privates = searched();
    EXPECT_EQ(manager->auEngine, player);
    EXPECT_EQ(manager->viewController, nullptr);
    EXPECT_EQ(privates.audioUnit(), nullptr);
    EXPECT_EQ(privates.componentName(), "TSLY: Orvalo Extension");
    EXPECT_EQ(privates.componentDescription(),
              (AudioComponentDescription{0x61756D66, 0x6F72564C, 0x54534C59, 2, 0}));
}

TEST_F(NoEffect, CreatesAnEngineByDefault) {
    const auto other = AUExtensionManager::init(delegate);
    EXPECT_NE(other->auEngine, nullptr);
    EXPECT_NE(other->auEngine, player);
    serveMainQueueUntilPrinted(output, kNoneFound);
}

TEST_F(NoEffect, AnAbsentComponentEndsTheSearch) {
    const auto privates = searched();
    privates.select(std::shared_ptr<AVAudioUnitComponent>(), [] { FAIL(); });
    EXPECT_EQ(newLines(), Lines({"ERROR: Component is nil."}));
}

TEST_F(NoEffect, AnAbsentDescriptionEndsTheSearch) {
    const auto privates = searched();
    privates.select(std::optional<AudioComponentDescription>(), [] { FAIL(); });
    EXPECT_EQ(newLines(), Lines({"Error: Component description is nil."}));
}

TEST_F(NoEffect, AnUnknownDescriptionPrintsItselfBeforeTheError) {
    const auto privates = searched();
    const AudioComponentDescription unknown{0x61756678, 1, 2, 3, 4};
    privates.select(std::optional(unknown), [] { FAIL(); });
    const std::string error = "Error: Could not instantiate audio unit.";
    serveMainQueueUntilPrinted(output, error);
    EXPECT_EQ(newLines(), Lines({description(unknown), error}));
}

TEST_F(NoEffect, ReportsAComponentWithItsEmptyLines) {
    const auto privates = searched();
    const auto before = output.text().size();
    privates.log({0x61756D66, 0x6F72564C, 0x54534C59, 2, 0});
    const auto lines = report();
    std::string expected;
    for (const auto& line : lines) {
        expected += line + '\n';
    }
    EXPECT_EQ(output.text().substr(before), expected);
}

TEST_F(NoEffect, ReportsFlagsInEightDigitsAndZeroWithoutAPrefix) {
    const auto privates = searched();
    const AudioComponentDescription codes{0x61756D66, 0x6F72564C, 0x54534C59, 0, 0};
    for (const auto& [flags, text] :
         {std::pair{0U, "0000000000"}, {0x1234U, "0x00001234"}, {0xFFFFFFFFU, "0xffffffff"}}) {
        auto record = codes;
        record.componentFlags = flags;
        privates.log(record);
        EXPECT_EQ(newLines(), report(text));
    }
}

TEST_F(NoEffect, WarnsOnlyWithoutAUnit) {
    const auto privates = searched();
    manager->connectParametersToControls();
    EXPECT_EQ(newLines(), Lines({"WARNING: Audio unit is nil (yet?)."}));
    privates.audioUnit() = std::make_shared<ConstantUnit>(0.0F);
    manager->connectParametersToControls();
    EXPECT_EQ(newLines(), Lines());
}

TEST_F(NoEffect, TheEndOfTheSearchNeedsNoDelegate) {
    delegate = nullptr;
    const auto privates = searched();
    privates.onFoundComponent();
    EXPECT_EQ(newLines(), Lines({"WARNING: Audio unit is nil (yet?)."}));
}

TEST_F(NoEffect, ListsNoPresetsWithoutAUnit) {
    searched();
    EXPECT_TRUE(manager->presets().empty());
    EXPECT_FALSE(manager->currentPreset());
    manager->setCurrentPreset(Preset(std::make_shared<AUAudioUnitPreset>(1, "Loud")));
    EXPECT_FALSE(manager->currentPreset());
    manager->setCurrentPreset(std::nullopt);
    EXPECT_FALSE(manager->currentPreset());
}

TEST_F(NoEffect, ListsTheUnitsPresetsInItsOrder) {
    const auto privates = searched();
    const auto unit = std::make_shared<ConstantUnit>(0.0F);
    privates.audioUnit() = unit;
    EXPECT_TRUE(manager->presets().empty());

    unit->presets = {std::make_shared<AUAudioUnitPreset>(3, "Warm"),
                     std::make_shared<AUAudioUnitPreset>(-1, "Cold")};
    const auto presets = manager->presets();
    ASSERT_EQ(presets.size(), 2U);
    EXPECT_EQ(presets[0].number(), 3);
    EXPECT_EQ(presets[0].name(), "Warm");
    EXPECT_EQ(presets[0].audioUnitPreset, unit->presets[0]);
    EXPECT_EQ(presets[1].number(), -1);
    EXPECT_EQ(presets[1].name(), "Cold");
}

TEST_F(NoEffect, ReadsAndSetsTheUnitsCurrentPreset) {
    const auto privates = searched();
    const auto unit = std::make_shared<ConstantUnit>(0.0F);
    privates.audioUnit() = unit;
    EXPECT_FALSE(manager->currentPreset());

    const auto warm = std::make_shared<AUAudioUnitPreset>(3, "Warm");
    manager->setCurrentPreset(Preset(warm));
    EXPECT_EQ(unit->current, warm);
    ASSERT_TRUE(manager->currentPreset());
    EXPECT_EQ(manager->currentPreset()->audioUnitPreset, warm);
    manager->setCurrentPreset(std::nullopt);
    EXPECT_EQ(unit->current, nullptr);
    EXPECT_FALSE(manager->currentPreset());
}

TEST_F(NoEffect, TogglesTheEngine) {
    searched();
    EXPECT_TRUE(manager->togglePlayback());
    EXPECT_TRUE(peer.isPlaying());
    EXPECT_FALSE(manager->togglePlayback());
    EXPECT_FALSE(peer.isPlaying());
}

TEST_F(NoEffect, CleanupFinalizesTheEngine) {
    searched();
    manager->togglePlayback();
    settle();
    newLines();
    manager->cleanup();
    settle();
    EXPECT_FALSE(peer.isPlaying());
    EXPECT_EQ(newLines(), Lines({"AUEnginePlayer: Audio session was set active.", kDisconnects,
                                 "AUEnginePlayer: Performed audio unit disconnection.",
                                 "AUEnginePlayer: The audio unit was set to 'nil'.",
                                 "AUEnginePlayer: Audio engine stopping.",
                                 "[main] onPlayerStateChanged(playing: false)"}));
}

}  // namespace
}  // namespace orvalo::testing
