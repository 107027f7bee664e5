#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/testing/ProgramFolder.h"

int main(int argc, char** argv) {
    const orvalo::testing::ProgramFolder folder;
    // Standard output belongs to the lines under test.
    g_log_writer_default_set_use_stderr(TRUE);
    testing::InitGoogleMock(&argc, argv);
    // A fork of a program with threads can hang; a fresh start of it cannot.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    return RUN_ALL_TESTS();
}
