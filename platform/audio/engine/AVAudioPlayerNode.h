#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "platform/audio/engine/AVAudioNode.h"
#include "platform/audio/file/AVAudioFile.h"

namespace orvalo {

/// When to play something; only "after what is scheduled already" (an absent time) is offered.
struct AVAudioTime {};

/// Plays files one after another, joined sample-exactly. Decoding runs ahead on a thread of the
/// player's own, which also converts a file whose format is not the player's output format.
/// The operations may be called from any thread.
class AVAudioPlayerNode : public AVAudioNode {
  public:
    AVAudioPlayerNode();
    ~AVAudioPlayerNode() override;

    /// By how much the player takes a file's frames before they sound: the time in which the next
    /// file can be scheduled so that it joins without a gap.
    static constexpr std::chrono::milliseconds consumptionLead{200};

    /// Plays what is scheduled, now or as soon as the engine renders.
    void play();
    /// Holds the playback position; what is scheduled stays.
    void pause();
    /// Forgets all that is scheduled and rewinds; every pending completion is called before this
    /// returns, on the calling thread.
    void stop();
    bool isPlaying() const;

    /// Schedules a whole file behind what is scheduled already. at: absent. completionHandler:
    /// called once, when the player has consumed the file (consumptionLead before its last frame
    /// is rendered), on the player's thread, or when the player is stopped.
    void scheduleFile(std::shared_ptr<AVAudioFile> file, std::optional<AVAudioTime> at,
                      std::function<void()> completionHandler);

    /// The engine's output format when the connection states none.
    AVAudioFormat outputFormat(std::int64_t forBus) const override;

    /// How many quanta got less than they asked for although a file was scheduled.
    std::uint64_t underrunCount() const;

  private:
    void prepareToRender(const AVAudioFormat* input, const AVAudioFormat& output) override;
    std::shared_ptr<RenderKernel> kernel() override;

    class Playback;
    std::shared_ptr<Playback> playback_;
};

}  // namespace orvalo
