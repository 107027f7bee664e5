#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/audio/engine/AVAudioEngine.h"
#include "tests/Audio Engine/ConstantUnit.h"
#include "tests/Audio Engine/Peers.h"
#include "tests/Audio Engine/PrintingDelegate.h"
#include "tests/testing/MainQueue.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

/// A player whose engine renders only on request of the test, which so controls the ends of passes.
/// Captures standard output from the start.
class PlayerFixture : public ::testing::Test {
  protected:
    static constexpr std::uint32_t kRate = 44100;
    /// The value of constantFile().
    static constexpr float kFileValue = 0.5F;

    PlayerFixture();
    ~PlayerFixture() override;

    /// An address of a stereo file that is kFileValue throughout.
    URL constantFile(const std::string& name, double seconds = 1.0, std::uint32_t channels = 2);
    /// An address of a damaged file.
    URL damagedFile(const std::string& name);

    static std::shared_ptr<AVAudioUnit> unit(float value,
                                             std::vector<std::string> midiOutputNames = {});

    /// Renders that time and returns the first channel of the last frame.
    float render(double seconds);
    /// Waits until the player's queue has run its items.
    void settle();
    /// The lines since the last call.
    Lines newLines();

    TemporaryFolder folder;
    CapturedOutput output;
    std::shared_ptr<AVAudioEngine> engine;
    std::shared_ptr<PrintingDelegate> delegate = std::make_shared<PrintingDelegate>();
    std::shared_ptr<AUEnginePlayer> player;
    AUEnginePlayerPeer peer;

  private:
    std::size_t seen_ = 0;
};

}  // namespace orvalo::testing
