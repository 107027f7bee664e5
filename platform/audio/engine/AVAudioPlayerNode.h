#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/audio/engine/AVAudioNode.h"
#include "platform/audio/file/AVAudioFile.h"

namespace orvalo {

/// When to play a file. Only an absent time is supported: after all scheduled files.
struct AVAudioTime {};

/// Plays files one after another, joined sample-exactly. A thread per player decodes ahead. The
/// output has the format of the connection, or of the file that plays where the connection states
/// none. Any thread but the render thread.
class AVAudioPlayerNode : public AVAudioNode {
  public:
    AVAudioPlayerNode();
    ~AVAudioPlayerNode() override;

    /// How long before a file's last frame is rendered its completion is called. A file that is
    /// scheduled within this time joins without a gap.
    static constexpr std::chrono::milliseconds consumptionLead{200};

    /// Plays the scheduled files as soon as the engine renders.
    void play();
    /// Keeps the playback position and the scheduled files.
    void pause();
    /// Removes everything scheduled. Calls all pending completions before it returns, on the
    /// calling thread, in the order of scheduling; waits for a completion that is running. So a
    /// completion must not wait for a thread that stops the player.
    void stop();
    bool isPlaying() const;

    /// Schedules a whole file after all others. completionHandler: called once, on
    /// the player's thread consumptionLead before the last frame is rendered (for a shorter file as
    /// soon as it is decoded), or in stop(). A file may be scheduled again while it plays, but must
    /// not be read elsewhere.
    void scheduleFile(std::shared_ptr<AVAudioFile> file, std::optional<AVAudioTime> at,
                      std::function<void()> completionHandler);

    /// How many quanta were incomplete because decoding fell behind.
    std::uint64_t underrunCount() const;

  private:
    class Playback;

    Inputs inputs() const override { return Inputs::none; }
    AVAudioFormat derivedFormat(const AVAudioFormat* input,
                                const AVAudioFormat& engineFormat) const override;
    void prepareToRender(const AVAudioFormat* input, const AVAudioFormat& output) override;
    std::shared_ptr<RenderKernel> kernel() const override;
    std::uint32_t awaitInput(std::uint32_t frameCount) override;
    void setRenderingOffline(bool isOffline) override;

    const std::shared_ptr<Playback> playback_;
};

}  // namespace orvalo
