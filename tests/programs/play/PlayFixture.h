#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/testing/Lines.h"
#include "tests/testing/Program.h"
#include "tests/testing/Staged.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {

/// orvalo-play on the null output with only the application's effect.
class PlayFixture : public ::testing::Test {
  protected:
    struct End {
        int status = 0;
        Lines output;
        std::string error;
    };

    /// Runs the program to its end.
    End run(std::vector<std::string> arguments);
    std::vector<std::string> command(std::vector<std::string> arguments) const;

    /// Creates a wav file of noise and returns its path.
    std::string wav(const std::string& name, std::uint32_t rate, std::size_t frames,
                    std::uint32_t channels = 2);
    /// Creates a bundle with Orvalo's codes for another plug-in and returns the folder for
    /// LV2_PATH, which goes on with `others`.
    std::string standIn(const std::string& plugin, const std::string& others = "/usr/lib/lv2");

    /// Makes program one whose installation has no effect.
    void useProgramWithoutEffect();

    TemporaryFolder folder;
    std::string program = staged("orvalo-play");
    Program::Environment environment{{"ORVALO_AUDIO_OUTPUT", "null"}, {"LV2_PATH", "/nowhere"}};
};

}  // namespace orvalo::testing
