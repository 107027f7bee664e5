#include "support/FileLocations.h"
#include "tests/Audio Engine/FatalEnd.h"
#include "tests/Audio Engine/PlayerFixture.h"

// This program's bundle has no resources.
namespace orvalo::testing {
namespace {

using BareBundle = PlayerFixture;

TEST_F(BareBundle, EndsTheProgramAtAStart) {
    EXPECT_FATAL_ERROR(player->start(), kFoundNil);
}

TEST_F(BareBundle, HasNoResourcesPath) {
    EXPECT_FATAL_ERROR(getPaths(), kFoundNil);
}

}  // namespace
}  // namespace orvalo::testing
