#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/audio/component/AVAudioUnitComponentManager.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "tests/platform/audio/lv2/Zoo.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The program's registry; the search path is set before its first use.
class ComponentManager : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        // The program has one thread so far.
        setenv("LV2_PATH", zooFolder().c_str(), 1);
    }

    static std::vector<std::string> uris(const AudioComponentDescription& key) {
        std::vector<std::string> result;
        const auto manager = AVAudioUnitComponentManager::sharedAudioUnitComponentManager();
        for (const auto& component : manager->components(key)) {
            if (component->uri.starts_with("urn:orvalo:zoo:")) {
                result.push_back(component->uri.substr(15));
            }
        }
        return result;
    }
};

TEST_F(ComponentManager, MatchesTheFieldsThatAreNotZero) {
    EXPECT_EQ(uris({}).size(), 19U);
    EXPECT_THAT(uris({0, fourCharCode("prob"), 0, 0, 0}), ElementsAre("probe"));
    EXPECT_THAT(uris({0, 0, fourCharCode("ZOO "), 0, 0}), ElementsAre("probe"));
    EXPECT_THAT(uris({fourCharCode("aumf"), fourCharCode("prob"), fourCharCode("ZOO "), 3, 0}),
                ElementsAre("probe"));
    EXPECT_THAT(uris({fourCharCode("aumf"), 0, fourCharCode("ZOO "), 1, 0}), IsEmpty());
    EXPECT_THAT(uris({0, 0, 0, 3, 0}), ElementsAre("probe"));
    EXPECT_THAT(uris({0, 0, 0, 0, 1}), IsEmpty());
    EXPECT_THAT(uris({fourCharCode("aufx"), 0, 0, 0, 0}), IsEmpty());
    EXPECT_EQ(uris({fourCharCode("aumf"), 0, fourCharCode("ZOO!"), 0, 0}).size(), 18U);
}

TEST_F(ComponentManager, GivesWhatTheManifestStates) {
    const auto found = AVAudioUnitComponentManager::sharedAudioUnitComponentManager()->components(
        {0, fourCharCode("prob"), 0, 0, 0});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]->name, "ZOO: Probe");
    const AudioComponentDescription expected{fourCharCode("aumf"), fourCharCode("prob"),
                                             fourCharCode("ZOO "), 3, 0};
    EXPECT_EQ(found[0]->audioComponentDescription, expected);
    const auto unit =
        std::make_shared<LV2LocalAudioUnit>(LV2World::shared(), found[0]->uri, expected);
    EXPECT_EQ(unit->componentDescription(), expected);
}

TEST(AudioComponentDescription, IsDescribedInOneLine) {
    EXPECT_EQ(description({fourCharCode("aumf"), fourCharCode("orVL"), fourCharCode("TSLY"), 2, 0}),
              "AudioComponentDescription(componentType: 1635085670, componentSubType: 1869764172, "
              "componentManufacturer: 1414745177, componentFlags: 2, componentFlagsMask: 0)");
}

}  // namespace
