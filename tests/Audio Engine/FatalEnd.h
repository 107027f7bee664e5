#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

/// Expects that the statement ends the program by fatalError(message).
#define EXPECT_FATAL_ERROR(statement, message)                 \
    EXPECT_EXIT(statement, ::testing::KilledBySignal(SIGABRT), \
                ::testing::HasSubstr(std::string("Fatal error: ") + (message) + "\n"))

namespace orvalo::testing {

/// The fatal error of unwrapped().
inline constexpr auto kFoundNil = "Unexpectedly found nil while unwrapping an Optional value";

}  // namespace orvalo::testing
