#include <gtest/gtest.h>

#include <filesystem>

#include "platform/audio/lv2/URIDMap.h"
#include "tests/platform/audio/lv2/Zoo.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

namespace fs = std::filesystem;

std::shared_ptr<LV2LocalAudioUnit> makeProbe(const LV2UnitStart& start) {
    return std::make_shared<LV2LocalAudioUnit>(zooWorld(), "urn:orvalo:zoo:probe",
                                               AudioComponentDescription{}, start);
}

TEST(StateProperties, RestoreValuesAndFilesInAnotherUnit) {
    const TemporaryFolder folder;
    LV2StateProperties state;
    {
        const auto unit = makeProbe({.filesFolder = folder.path()});
        unit->setCurrentPreset(unit->factoryPresets()[0]);
        state = unit->stateProperties();
    }
    // The caller owns the folder.
    EXPECT_TRUE(fs::exists(folder.path() / "folder/secret.txt"));
    auto& seen = probeRecord();
    seen.secret = 0;
    seen.hasFile = false;
    seen.restoresWithSchedule = 0;
    const auto unit = makeProbe({.filesFolder = folder.path(), .state = state});
    EXPECT_EQ(seen.secret, 77);
    EXPECT_TRUE(seen.hasFile);
    EXPECT_EQ(seen.restoresWithSchedule, 1);
    EXPECT_EQ(unit->stateProperties(), state);
}

TEST(StateProperties, HoldExactlyWhatThePluginSaved) {
    const TemporaryFolder folder;
    const auto unit = makeProbe({.filesFolder = folder.path()});
    EXPECT_TRUE(unit->keepsState());
    const auto state = unit->stateProperties();
    ASSERT_EQ(state.size(), 2U);
    EXPECT_STREQ(URIDMap::shared().unmap(state[0].key), "urn:orvalo:zoo:probe#secret");
    EXPECT_EQ(state[0].body.size(), sizeof(int));
    EXPECT_EQ(state[1].body, (folder.path() / "folder/secret.txt").string() + '\0');
    setControl(*unit, "gain", 0.75F);
    EXPECT_EQ(unit->stateProperties(), state);
}

TEST(StateProperties, AreEmptyForAPluginWithoutState) {
    const auto unit = makeZooUnit("liar");
    EXPECT_FALSE(unit->keepsState());
    EXPECT_TRUE(unit->stateProperties().empty());
}

TEST(UnitStart, SetsRateAndContextNameOfTheFirstInstance) {
    auto& seen = probeRecord();
    seen.instantiations = 0;
    const auto unit = makeProbe({.contextName = "Studio", .rendering = {.sampleRate = 22050.0}});
    EXPECT_EQ(seen.instantiations, 1);
    EXPECT_EQ(seen.rate, 22050.0);
    EXPECT_STREQ(seen.firstContextName.data(), "Studio");
    EXPECT_EQ(unit->contextName(), "Studio");
    EXPECT_EQ(unit->sampleRate(), 22050.0);
}

}  // namespace
