#include "platform/audio/file/PacketDecoder.h"

#include <cmath>
#include <string>
#include <utility>

#include "platform/audio/file/FileRefusal.h"
#include "platform/foundation/FatalError.h"

extern "C" {
#include <libavutil/intreadwrite.h>
}

namespace orvalo {

namespace {

// Time stamps are rounded to their time base; a smaller difference from the count of decoded
// samples is no gap.
std::int64_t stampTolerance(const AVRational& timeBase, int rate) {
    return static_cast<std::int64_t>(std::ceil(av_q2d(timeBase) * rate)) + 2;
}

// Samples are counted where stamps are too coarse to place them.
bool isCoarse(const AVRational& timeBase, int rate) {
    return av_q2d(timeBase) * rate > 1.5;
}

}  // namespace

PacketDecoder::PacketDecoder(const LocalFile& file) : file_(file) {
    loadFFmpeg(file.path());
    packet_.reset(lateFFmpeg(av_packet_alloc)());
    frame_.reset(lateFFmpeg(av_frame_alloc)());
    if (!packet_ || !frame_) {
        fatalError("No memory to decode an audio file.");
    }
    restart();
}

void PacketDecoder::openDecoder() {
    const AVStream& stream = container_->stream();
    const AVCodec* codec = lateFFmpeg(avcodec_find_decoder)(stream.codecpar->codec_id);
    if (codec == nullptr) {
        throw refusal(FileRefusal::noDecoder, file_.path(),
                      std::string("no decoder for its sound (") +
                          lateFFmpeg(avcodec_get_name)(stream.codecpar->codec_id) + ")");
    }
    decoder_.reset(lateFFmpeg(avcodec_alloc_context3)(codec));
    if (!decoder_) {
        fatalError("No memory to decode an audio file.");
    }
    lateFFmpeg(avcodec_parameters_to_context)(decoder_.get(), stream.codecpar);
    decoder_->pkt_timebase = stream.time_base;
    decoder_->thread_count = 1;
    // The timeline cuts priming and padding, in the same way for all containers.
    decoder_->flags2 |= AV_CODEC_FLAG2_SKIP_MANUAL;
    if (lateFFmpeg(avcodec_open2)(decoder_.get(), codec, nullptr) < 0) {
        throw refusal(FileRefusal::notDecodable, file_.path(),
                      std::string("its sound cannot be decoded (") + codec->name + ")");
    }
}

void PacketDecoder::restart() {
    if (!container_ || !container_->isKind("mov") || !container_->seek(0)) {
        container_ = std::make_unique<AudioContainer>(file_);
    }
    // A flushed decoder may keep state, such as the seed of its noise.
    openDecoder();
    lateFFmpeg(av_frame_unref)(frame_.get());
    frameStart_ = 0;
    nextStart_.reset();
    firstPacketStamp_.reset();
    isFromStart_ = true;
    stampOffset_ = 0;
    isDraining_ = false;
    isAhead_ = false;
    hadDamage_ = false;
}

bool PacketDecoder::hasExactTimes() const {
    return !isCoarse(container_->stream().time_base, decoder_->sample_rate);
}

bool PacketDecoder::canSeek() const {
    const auto* descriptor =
        lateFFmpeg(avcodec_descriptor_get)(container_->stream().codecpar->codec_id);
    return descriptor != nullptr && (descriptor->props & AV_CODEC_PROP_LOSSLESS) != 0 &&
           hasExactTimes();
}

bool PacketDecoder::seek(std::int64_t target) {
    if (!canSeek()) {
        return false;
    }
    const AVRational timeBase = container_->stream().time_base;
    const auto stamp =
        lateFFmpeg(av_rescale_q_rnd)(target, {1, decoder_->sample_rate}, timeBase, AV_ROUND_DOWN);
    const bool isMoved = container_->seek(stamp);
    lateFFmpeg(avcodec_flush_buffers)(decoder_.get());
    lateFFmpeg(av_frame_unref)(frame_.get());
    frameStart_ = 0;
    nextStart_.reset();
    firstPacketStamp_.reset();
    isFromStart_ = false;
    stampOffset_ = 0;
    isDraining_ = false;
    isAhead_ = false;
    // FFmpeg 7 does not find every place in FLAC, and then stands anywhere. A damaged file may lead
    // beyond the target.
    isAhead_ = isMoved && decodeNext() && frame_->pts != AV_NOPTS_VALUE && frameStart_ <= target;
    if (!isAhead_) {
        restart();
    }
    return true;
}

// Whether nothing of the frame is to be heard. FFmpeg 7 decodes the first packet of Vorbis, too,
// which only prepares the second one.
bool PacketDecoder::isSkipped() const {
    const auto* side = lateFFmpeg(av_frame_get_side_data)(frame_.get(), AV_FRAME_DATA_SKIP_SAMPLES);
    return decoder_->codec_id == AV_CODEC_ID_VORBIS && side != nullptr && side->size >= 4 &&
           AV_RL32(side->data) >= static_cast<std::uint32_t>(frame_->nb_samples);
}

bool PacketDecoder::receiveFrame() {
    const int result = lateFFmpeg(avcodec_receive_frame)(decoder_.get(), frame_.get());
    if (result < 0 && result != AVERROR(EAGAIN) && result != AVERROR_EOF) {
        hadDamage_ = true;
    }
    return result >= 0 && frame_->nb_samples > 0 && frame_->sample_rate > 0 && !isSkipped();
}

void PacketDecoder::place() {
    const AVRational timeBase = container_->stream().time_base;
    const int rate = frame_->sample_rate;
    const bool isStamped = frame_->pts != AV_NOPTS_VALUE;
    const auto stamped =
        (isStamped ? lateFFmpeg(av_rescale_q)(frame_->pts, timeBase, {1, rate}) : 0);
    if (!nextStart_) {
        // The first packet of some codecs decodes to nothing. Where its stamp is 0, all later
        // stamps are late by its length.
        const bool isLate = isStamped && firstPacketStamp_ == 0;
        stampOffset_ = isLate || isCoarse(timeBase, rate) ? stamped : 0;
        frameStart_ = stamped - stampOffset_;
    } else if (const auto start = stamped - stampOffset_;
               isStamped && std::abs(start - *nextStart_) > stampTolerance(timeBase, rate)) {
        frameStart_ = start;
    } else {
        frameStart_ = *nextStart_;
    }
    nextStart_ = frameEnd();
}

bool PacketDecoder::sendPacket() {
    const bool isPacket = container_->readPacket(*packet_);
    if (isPacket && isFromStart_ && !firstPacketStamp_) {
        firstPacketStamp_ = packet_->pts;
    }
    const int sent =
        lateFFmpeg(avcodec_send_packet)(decoder_.get(), isPacket ? packet_.get() : nullptr);
    hadDamage_ = hadDamage_ || (isPacket && sent < 0);
    return isPacket;
}

bool PacketDecoder::decodeNext() {
    if (std::exchange(isAhead_, false)) {
        return true;
    }
    while (!receiveFrame()) {
        if (isDraining_) {
            return false;
        }
        isDraining_ = !sendPacket();
    }
    place();
    return true;
}

}  // namespace orvalo
