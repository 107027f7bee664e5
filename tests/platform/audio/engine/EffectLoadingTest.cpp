#include "platform/audio/engine/EffectLoading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/audio/engine/AVAudioEngine.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "tests/platform/audio/engine/StepOutput.h"
#include "tests/platform/audio/engine/TestUnit.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class EffectLoadingTest : public ::testing::Test {
  protected:
    // The program has one thread.
    static void set(const char* value) { setenv("ORVALO_EFFECT_LOADING", value, 1); }
    static void unset() { unsetenv("ORVALO_EFFECT_LOADING"); }
    ~EffectLoadingTest() override { unset(); }
};

TEST_F(EffectLoadingTest, FollowsTheEnvironmentVariable) {
    set("out-of-process");
    EXPECT_EQ(platformEffectLoading(), EffectLoading::outOfProcess);
    set("in-process");
    EXPECT_EQ(platformEffectLoading(), EffectLoading::inProcess);
}

TEST_F(EffectLoadingTest, DefaultsToOutOfProcess) {
    unset();
    EXPECT_EQ(platformEffectLoading(), EffectLoading::outOfProcess);
}

TEST_F(EffectLoadingTest, IgnoresAnUnknownValueWithAWarning) {
    const CapturedOutput error(2);
    set("");
    EXPECT_EQ(platformEffectLoading(), EffectLoading::outOfProcess);
    EXPECT_EQ(error.text(), "");
    set("upstairs");
    EXPECT_EQ(platformEffectLoading(), EffectLoading::outOfProcess);
    EXPECT_THAT(error.text(), HasSubstr("ORVALO_EFFECT_LOADING must be 'in-process' or "
                                        "'out-of-process', not 'upstairs'; it is ignored."));
}

/// Records calls of setRenderingOffline().
class OfflineUnit : public TestUnit {
  public:
    OfflineUnit() : TestUnit({}) {}
    void setRenderingOffline(bool isOffline) override { told.push_back(isOffline); }

    std::vector<bool> told;
};

TEST(RenderingOffline, IsSetOnUnitsWhenTheyAreAttached) {
    const auto engine =
        std::make_shared<AVAudioEngine>(std::make_unique<StepOutput>(AVAudioFormat{48000.0, 2}));
    const auto early = std::make_shared<OfflineUnit>();
    const auto late = std::make_shared<OfflineUnit>();
    const auto node = std::make_shared<AVAudioUnit>(early);
    engine->attach(node);
    engine->enableManualRenderingMode({48000.0, 2});
    engine->attach(std::make_shared<AVAudioUnit>(late));
    engine->detach(node);
    EXPECT_THAT(early->told, ElementsAre(false, true, false));
    EXPECT_THAT(late->told, ElementsAre(true));
}

}  // namespace
