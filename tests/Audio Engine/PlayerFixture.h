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

/// A player whose engine renders only when the test requests it, so the test ends the passes.
/// Captures standard output from the start.
class PlayerFixture : public ::testing::Test {
  protected:
    static constexpr std::uint32_t kRate = 44100;
    /// Every sample of constantFile().
    static constexpr float kFileValue = 0.5F;

    PlayerFixture();
    ~PlayerFixture() override;

    /// Writes a file whose samples are all kFileValue and returns its address.
    URL constantFile(const std::string& name, double seconds = 1.0, std::uint32_t channels = 2);
    /// Writes a damaged file and returns its address.
    URL damagedFile(const std::string& name);

    static std::shared_ptr<AVAudioUnit> unit(float value,
                                             std::vector<std::string> midiOutputNames = {});

    /// Renders for that many seconds. Returns the first channel of the last frame.
    float render(double seconds);
    /// Waits until the player's queue has run its items.
    void settle();
    /// The lines printed since the last call.
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
