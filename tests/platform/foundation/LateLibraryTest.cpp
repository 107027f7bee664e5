#include "platform/foundation/LateLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/foundation/NSError.h"

namespace orvalo {
namespace {

using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

TEST(LateLibraryTest, FindsFunctionsOfTheLibrariesThatItIsLinkedWith) {
    EXPECT_NE(LateLibrary("late-ffmpeg").function("avformat_version"), nullptr);
    EXPECT_NE(LateLibrary("late-ffmpeg").function("avcodec_version"), nullptr);
}

TEST(LateLibraryTest, NamesTheLibraryThatIsMissing) {
    EXPECT_THAT([] { LateLibrary("late-alchemy"); },
                ThrowsMessage<NSError>(HasSubstr("/lib/orvalo/late-alchemy.so: cannot open")));
}

TEST(LateLibraryDeathTest, EndsTheProgramWhenAFunctionIsMissing) {
    EXPECT_DEATH(LateLibrary("late-ffmpeg").function("transmute"), "Fatal error: .*transmute");
}

}  // namespace
}  // namespace orvalo
