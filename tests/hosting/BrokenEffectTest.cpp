#include "tests/hosting/ManagerFixture.h"

// This program's registry has one effect, whose library is missing.
namespace orvalo::testing {
namespace {

class BrokenEffect : public ManagerFixture {
  protected:
    BrokenEffect() : ManagerFixture(ORVALO_PLAYER_LV2_PATH) {}
};

TEST_F(BrokenEffect, PrintsItsDescriptionBeforeTheError) {
    makeManager();
    settle();
    EXPECT_EQ(
        newLines(),
        Lines({kNote, "AUExtensionManager: Loaded component has following properties."}) +
            report() +
            Lines({description(AudioComponentDescription{0x61756D66, 0x6F72564C, 0x54534C59, 2, 0}),
                   "Error: Could not instantiate audio unit."}));
    EXPECT_EQ(delegate->found(), nullptr);
}

TEST_F(BrokenEffect, LeavesThePlayerUnconnected) {
    makeManager();
    EXPECT_TRUE(manager->togglePlayback());
    EXPECT_NE(render(0.1), 0.0F);
}

}  // namespace
}  // namespace orvalo::testing
