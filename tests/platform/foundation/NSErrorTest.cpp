#include "platform/foundation/NSError.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace orvalo {
namespace {

TEST(NSError, KeepsItsArguments) {
    const NSError error("com.example", -7, "It broke.");
    EXPECT_EQ(error.domain(), "com.example");
    EXPECT_EQ(error.code(), -7);
    EXPECT_EQ(error.localizedDescription(), "It broke.");
    EXPECT_EQ(error.description(), "Error Domain=com.example Code=-7 \"It broke.\"");
}

TEST(NSError, PutsTheCulpritBeforeTheLibrarysText) {
    const auto error = NSError::posix(ENOENT, "/a/b");
    EXPECT_EQ(error.domain(), "NSPOSIXErrorDomain");
    EXPECT_EQ(error.code(), ENOENT);
    EXPECT_EQ(error.localizedDescription(), "/a/b: No such file or directory");
}

}  // namespace
}  // namespace orvalo
