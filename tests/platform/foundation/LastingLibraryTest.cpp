#include "platform/foundation/LastingLibrary.h"

#include <gmock/gmock.h>

namespace orvalo {

namespace {

using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

struct Mathematics {
    LastingLibrary library{"libm.so.6"};
    double (*const root)(double) = library["sqrt"];
};

struct Alchemy {
    LastingLibrary library{"libalchemy.so.1"};
};

TEST(LastingLibraryTest, FindsFunctionsByName) {
    EXPECT_EQ(Mathematics().root(16), 4);
}

TEST(LastingLibraryTest, NamesTheLibraryThatIsMissing) {
    EXPECT_THAT([] { Alchemy(); }, ThrowsMessage<NSError>(HasSubstr("libalchemy.so.1")));
}

TEST(LastingLibraryTest, NamesTheFunctionThatIsMissing) {
    EXPECT_THAT([] { static_cast<void>(LastingLibrary("libm.so.6")["transmute"]); },
                ThrowsMessage<NSError>(HasSubstr("transmute")));
}

TEST(LastingLibraryTest, ARequiredLibraryIsMade) {
    EXPECT_EQ(requiredLibrary<Mathematics>("Mathematics").root(9), 3);
}

TEST(LastingLibraryDeathTest, ARequiredLibraryThatIsMissingEndsTheProgram) {
    EXPECT_DEATH(requiredLibrary<Alchemy>("Alchemy"),
                 "Alchemy cannot be loaded: libalchemy\\.so\\.1: cannot open");
}

}  // namespace

}  // namespace orvalo
