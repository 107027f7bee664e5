#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/audio/file/AudioContainer.h"
#include "platform/audio/signal/AVAudioFormat.h"

namespace orvalo {

/// Decodes a file's audio stream frame by frame, each at its place: counted from the stream's time
/// 0 in output frames, priming included. One thread at a time.
class PacketDecoder {
  public:
    /// The file must outlive the decoder. Throws NSError when FFmpeg, the container or the
    /// coding cannot be opened.
    explicit PacketDecoder(const LocalFile& file);

    AudioContainer& container() const { return *container_; }

    /// Decodes the next frame. False at the end of what can be read.
    bool decodeNext();
    /// The frame that decodeNext() made: its samples, and where it begins.
    const AVFrame& frame() const { return *frame_; }
    std::int64_t frameStart() const { return frameStart_; }
    std::int64_t frameEnd() const { return frameStart_ + frame_->nb_samples; }
    /// Whether a packet since the last restart could not be decoded.
    bool hadDamage() const { return hadDamage_; }

    /// Whether the container's times say where a frame lies; if not, its end is not exact either.
    bool hasExactTimes() const;

    /// Goes back to the stream's start, as if newly made. Throws NSError as the constructor does.
    void restart();
    /// Goes to a place from which target can be reached, where this makes no difference to what is
    /// decoded (each packet stands for itself); returns whether it does so.
    bool seek(std::int64_t target);
    /// Whether seek() can.
    bool canSeek() const;

  private:
    void openDecoder();
    bool receiveFrame();
    void place();
    bool sendPacket();

    const LocalFile& file_;
    std::unique_ptr<AudioContainer> container_;
    FFmpegPointer<AVCodecContext> decoder_;
    FFmpegPointer<AVPacket> packet_;
    FFmpegPointer<AVFrame> frame_;
    std::int64_t frameStart_ = 0;
    std::optional<std::int64_t> nextStart_;  // Where the next frame begins if nothing is missing.
    std::optional<std::int64_t> firstPacketStamp_;  // Of the stream; not known after a seek.
    bool isFromStart_ = true;
    std::int64_t stampOffset_ = 0;  // What stamps are late by, in frames.
    bool isDraining_ = false;
    bool hadDamage_ = false;
};

}  // namespace orvalo
