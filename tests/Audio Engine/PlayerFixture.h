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

/// A player whose engine renders only what the test asks for, so that passes end when the test
/// wants them to. Standard output is caught from the start.
class PlayerFixture : public ::testing::Test {
  protected:
    static constexpr std::uint32_t kRate = 44100;
    /// What a file made by constantFile() plays.
    static constexpr float kFileValue = 0.5F;

    PlayerFixture();
    ~PlayerFixture() override;

    /// An address of a stereo file that is kFileValue throughout.
    URL constantFile(const std::string& name, double seconds = 1.0, std::uint32_t channels = 2);
    /// The same that no reader can open.
    URL damagedFile(const std::string& name);

    static std::shared_ptr<AVAudioUnit> unit(float value,
                                             std::vector<std::string> midiOutputNames = {});

    /// Renders that time and returns the last frame's first channel.
    float render(double seconds);
    /// Until the player's queue has done what it holds.
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
