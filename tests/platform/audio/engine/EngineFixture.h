#pragma once

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/audio/engine/AVAudioEngine.h"
#include "platform/audio/engine/AVAudioPlayerNode.h"
#include "tests/platform/audio/engine/StepOutput.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {

/// Records completions in order, with their threads.
class Completions {
  public:
    std::function<void()> handler(std::string name);
    std::vector<std::string> names() const;
    std::thread::id thread(std::size_t index) const;
    /// Blocks until that many were called; fails the test after a minute.
    void waitFor(std::size_t count);

  private:
    struct Call {
        std::string name;
        std::thread::id thread;
    };
    mutable std::mutex mutex_;
    std::condition_variable called_;
    std::vector<Call> calls_;
};

/// An engine with one attached player, in manual rendering mode or on an output that the test
/// drives.
class EngineFixture : public ::testing::Test {
  protected:
    void start(const AVAudioFormat& format);
    void startLive(const AVAudioFormat& format);
    /// Destroys player and engine.
    void reset();

    /// Renders the next frames in manual mode, in quanta of varying length.
    Signal render(std::size_t frames);

    std::filesystem::path wav(const std::string& name, std::uint32_t rate, const Signal& signal);
    static std::shared_ptr<AVAudioFile> open(const std::filesystem::path& path);

    static Signal silence(std::size_t channels, std::size_t frames);
    static Signal part(const Signal& signal, std::size_t from, std::size_t count);
    static Signal repeated(const Signal& signal, int times);

    TemporaryFolder folder;
    Completions completions;  ///< Outlives the player, which may call it in its destructor.
    StepOutput* output = nullptr;
    std::shared_ptr<AVAudioEngine> engine;
    std::shared_ptr<AVAudioPlayerNode> player;

  private:
    AVAudioFormat format_;
    std::uint32_t quantum_ = 1;
};

}  // namespace orvalo::testing
