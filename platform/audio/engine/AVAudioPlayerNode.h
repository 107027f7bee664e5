#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/audio/engine/AVAudioNode.h"
#include "platform/audio/file/AVAudioFile.h"

namespace orvalo {

/// When to play something. Only the absent time is offered: behind what is scheduled already.
struct AVAudioTime {};

/// Plays files one after another, joined sample-exactly. Decoding runs ahead on a thread of the
/// player's own. Where the connection states no format, the player's output has the format of the
/// file that it plays; where it states another one, the player converts.
/// The operations may be called from any thread but the render thread.
class AVAudioPlayerNode : public AVAudioNode {
  public:
    AVAudioPlayerNode();
    ~AVAudioPlayerNode() override;

    /// By how much the player takes a file's last frames before they sound: the time in which the
    /// next file can be scheduled so that it joins without a gap.
    static constexpr std::chrono::milliseconds consumptionLead{200};

    /// Plays what is scheduled, now or as soon as the engine renders.
    void play();
    /// Holds the playback position; what is scheduled stays.
    void pause();
    /// Forgets all that is scheduled. Every pending completion is called before this returns, on
    /// the calling thread, in the order of scheduling; one that is under way has ended. So a
    /// completion must not wait for a thread that stops the player.
    void stop();
    bool isPlaying() const;

    /// Schedules a whole file behind what is scheduled already. completionHandler: called once,
    /// when the player has consumed the file (consumptionLead before its last frame is rendered; a
    /// shorter file as soon as it is decoded), on the player's thread, or when the player is
    /// stopped. One file may be scheduled again while it plays, but not be read elsewhere.
    void scheduleFile(std::shared_ptr<AVAudioFile> file, std::optional<AVAudioTime> at,
                      std::function<void()> completionHandler);

    /// How often the render thread got less than it asked for although a file was scheduled.
    std::uint64_t underrunCount() const;

  private:
    class Playback;

    Inputs inputs() const override { return Inputs::none; }
    AVAudioFormat derivedFormat(const AVAudioFormat* input,
                                const AVAudioFormat& engineFormat) const override;
    void prepareToRender(const AVAudioFormat* input, const AVAudioFormat& output) override;
    std::shared_ptr<RenderKernel> kernel() const override;
    void awaitInput() override;

    const std::shared_ptr<Playback> playback_;
};

}  // namespace orvalo
