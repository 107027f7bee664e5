#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/audio/file/AudioContainer.h"

namespace orvalo {

/// Decodes a file's audio stream, one FFmpeg frame of samples after the other. Positions count
/// output samples from the stream's time 0, priming included. One thread at a time.
class PacketDecoder {
  public:
    /// file must outlive the decoder. Throws NSError when FFmpeg, the container or the codec cannot
    /// be opened.
    explicit PacketDecoder(const LocalFile& file);

    AudioContainer& container() const { return *container_; }

    /// Decodes the next frame. False at the end of the readable part.
    bool decodeNext();
    /// The frame that decodeNext() has decoded, and its position.
    const AVFrame& frame() const { return *frame_; }
    std::int64_t frameStart() const { return frameStart_; }
    std::int64_t frameEnd() const { return frameStart_ + frame_->nb_samples; }
    /// Whether a packet since the last restart could not be decoded.
    bool hadDamage() const { return hadDamage_; }

    /// Whether the container's times are precise enough to place frames and the stream's end.
    bool hasExactTimes() const;

    /// Returns to the stream's start and to the state of a new decoder. Throws NSError as the
    /// constructor does.
    void restart();
    /// Moves to target or before it: to the start where the container finds no frame before it.
    /// Returns false, and does not move, where the decoded samples would differ from those of a
    /// straight decoding: in lossy codecs. Throws NSError as restart() does.
    bool seek(std::int64_t target);
    /// Whether seek() can.
    bool canSeek() const;

  private:
    void openDecoder();
    bool isSkipped() const;
    bool receiveFrame();
    void place();
    bool sendPacket();

    const LocalFile& file_;
    std::unique_ptr<AudioContainer> container_;
    FFmpegPointer<AVCodecContext> decoder_;
    FFmpegPointer<AVPacket> packet_;
    FFmpegPointer<AVFrame> frame_;
    std::int64_t frameStart_ = 0;
    std::optional<std::int64_t> nextStart_;         // Of the next frame unless packets are missing.
    std::optional<std::int64_t> firstPacketStamp_;  // Unset after a seek.
    bool isFromStart_ = true;
    std::int64_t stampOffset_ = 0;  // By how many samples all stamps are late.
    bool isDraining_ = false;
    bool isAhead_ = false;  // seek() has decoded the next frame.
    bool hadDamage_ = false;
};

}  // namespace orvalo
