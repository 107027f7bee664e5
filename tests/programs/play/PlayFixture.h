#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/programs/play/Program.h"
#include "tests/programs/play/Staged.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {

/// orvalo-play on the silent clock, with the application's own effect and no other.
class PlayFixture : public ::testing::Test {
  protected:
    using Lines = std::vector<std::string>;

    struct End {
        int status = 0;
        Lines output;
        std::string error;
    };

    /// A run to its end.
    End run(std::vector<std::string> arguments);
    std::vector<std::string> command(std::vector<std::string> arguments) const;

    /// A wav file of noise in the folder; its path.
    std::string wav(const std::string& name, std::uint32_t rate, std::size_t frames,
                    std::uint32_t channels = 2);
    /// A bundle that states Orvalo's codes for another plug-in; the folder for LV2_PATH.
    std::string standIn(const std::string& plugin);

    /// Makes program one whose installation has no effect.
    void useProgramWithoutEffect();

    TemporaryFolder folder;
    std::string program = staged("orvalo-play");
    Program::Environment environment{{"ORVALO_AUDIO_OUTPUT", "null"}, {"LV2_PATH", "/nowhere"}};
};

}  // namespace orvalo::testing
