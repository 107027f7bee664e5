#include "support/FileLocations.h"
#include "tests/heart/FatalEnd.h"
#include "tests/heart/PlayerFixture.h"

// This program's bundle has no resources.
namespace orvalo::testing {
namespace {

using BareBundle = PlayerFixture;

TEST_F(BareBundle, EndsAStartForWantOfAFile) {
    EXPECT_FATAL_ERROR(player->start(), kFoundNil);
}

TEST_F(BareBundle, HasNoResourcesPath) {
    EXPECT_FATAL_ERROR(getPaths(), kFoundNil);
}

}  // namespace
}  // namespace orvalo::testing
