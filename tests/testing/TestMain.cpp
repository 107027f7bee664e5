#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/foundation/StandardErrorLog.h"
#include "tests/testing/ProgramFolder.h"

int main(int argc, char** argv) {
    const orvalo::testing::ProgramFolder folder;
    // Tests compare standard output, so the log goes to standard error.
    orvalo::logToStandardError();
    testing::InitGoogleMock(&argc, argv);
    // A forked child of a program with threads can deadlock; this style starts the program again.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    return RUN_ALL_TESTS();
}
