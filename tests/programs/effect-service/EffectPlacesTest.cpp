#include "programs/effect-service/EffectPlaces.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace {

using namespace orvalo;

/// Writes the readable places to standard error, with all XDG variables set to folder, and ends the
/// process.
[[noreturn]] void reportReadable(const char* folder) {
    setenv("HOME", "/home/user", 1);
    for (const auto* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        setenv(variable, folder, 1);
    }
    for (const auto& place : effectPlaces({}, "/files", "/cache").readable) {
        const auto path = place.string();
        if (path.find("fontconfig") != std::string::npos || path.ends_with("themes")) {
            std::cerr << path << '\n';
        }
    }
    std::_Exit(0);
}

TEST(EffectPlacesDeathTest, FollowTheXDGVariables) {
    EXPECT_EXIT(reportReadable("/elsewhere"), ::testing::ExitedWithCode(0),
                "^/var/cache/fontconfig\n/home/user/\\.themes\n/elsewhere/fontconfig\n"
                "/elsewhere/themes\n/elsewhere/fontconfig\n$");
}

// A relative path would depend on the working folder.
TEST(EffectPlacesDeathTest, IgnoreRelativeXDGVariables) {
    EXPECT_EXIT(reportReadable("elsewhere"), ::testing::ExitedWithCode(0),
                "^/var/cache/fontconfig\n/home/user/\\.themes\n/home/user/\\.config/fontconfig\n"
                "/home/user/\\.local/share/themes\n/home/user/\\.cache/fontconfig\n$");
}

}  // namespace
