#include "platform/audio/file/AudioTimeline.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

#include "platform/audio/file/FileRefusal.h"
#include "platform/audio/file/MovieHeader.h"
#include "platform/audio/file/Mp3Header.h"
#include "platform/audio/file/OggLastPage.h"
#include "platform/audio/file/PacketDecoder.h"
#include "platform/audio/file/WaveData.h"
#include "platform/foundation/FatalError.h"

extern "C" {
#include <libavutil/intreadwrite.h>
}

namespace orvalo {

namespace {

using Segment = AudioTimeline::Segment;

// Decoded frames [start, end) that the container states.
struct Range {
    std::int64_t start = 0;
    std::int64_t end = 0;
};

// A range found by reading all packets.
struct ScannedRange : Range {
    std::int64_t packetsEnd = 0;
    std::int64_t longestPacket = 0;
};

// No coding holds more frames a byte than FLAC of constant signals: 65,535 in 13 bytes.
constexpr std::int64_t kMostFramesPerByte = 8192;

[[noreturn]] void refuseAsShort(const AudioContainer& container) {
    throw refusal(FileRefusal::shorterThanStated, container.file().path(),
                  "the file is shorter than it states");
}

std::int64_t inFrames(std::int64_t stamp, const AudioContainer& container, int rate) {
    return lateFFmpeg(av_rescale_q)(stamp, container.stream().time_base, {1, rate});
}

std::int64_t sideNumber(const AVPacket& packet, std::size_t at) {
    std::size_t size = 0;
    const auto* data =
        lateFFmpeg(av_packet_get_side_data)(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
    return data != nullptr && size >= at + 4 ? AV_RL32(data + at) : 0;
}

// Reads all packets without decoding them.
ScannedRange scannedRange(AudioContainer& container, int rate) {
    const FFmpegPointer<AVPacket> packet(lateFFmpeg(av_packet_alloc)());
    if (!packet) {
        fatalError("No memory to read an audio file.");
    }
    ScannedRange range;
    std::int64_t end = 0;
    std::int64_t padding = 0;
    for (bool isFirst = true; container.readPacket(*packet); isFirst = false) {
        const auto start =
            packet->pts == AV_NOPTS_VALUE ? end : inFrames(packet->pts, container, rate);
        end = start + inFrames(packet->duration, container, rate);
        range.longestPacket = std::max(range.longestPacket, end - start);
        if (isFirst) {
            range.start = std::max<std::int64_t>(start + sideNumber(*packet, 0), 0);
        }
        padding += sideNumber(*packet, 4);
    }
    // Only in MP3 do the packets' durations include the padding.
    range.end = container.isKind("mp3") ? end - padding : end;
    range.packetsEnd = end;
    return range;
}

// Whether the container's duration is that of its sound: no picture or other sound may be longer.
bool hasOnlySound(const AudioContainer& container) {
    const auto& context = container.context();
    return std::all_of(context.streams, context.streams + context.nb_streams,
                       [&](const AVStream* stream) {
                           return stream == &container.stream() ||
                                  stream->codecpar->codec_type == AVMEDIA_TYPE_ATTACHMENT ||
                                  (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
                       });
}

// The frames that the container states for its sound; absent when it states none.
std::optional<std::int64_t> statedFrames(const AudioContainer& container, int rate) {
    const auto& context = container.context();
    if (context.duration_estimation_method != AVFMT_DURATION_FROM_STREAM || context.duration <= 0) {
        return std::nullopt;
    }
    if (container.stream().duration != AV_NOPTS_VALUE) {
        return inFrames(container.stream().duration, container, rate);
    }
    // Writers of Matroska state each stream's duration in a tag.
    const auto* tag = lateFFmpeg(av_dict_get)(container.stream().metadata, "DURATION", nullptr, 0);
    int hours = 0;
    int minutes = 0;
    double seconds = 0.0;
    if (tag != nullptr && std::sscanf(tag->value, "%d:%d:%lf", &hours, &minutes, &seconds) == 3) {
        return std::llround((hours * 3600.0 + minutes * 60.0 + seconds) * rate);
    }
    if (!hasOnlySound(container)) {
        return std::nullopt;
    }
    return lateFFmpeg(av_rescale_q)(context.duration, {1, AV_TIME_BASE}, {1, rate});
}

// The scanned range, checked against the duration that the container states.
Range scannedAndStatedRange(AudioContainer& container, int rate) {
    const auto stated = statedFrames(container, rate);
    const auto range = scannedRange(container, rate);
    // Some writers count one packet too much.
    if (stated && range.packetsEnd + range.longestPacket < *stated) {
        refuseAsShort(container);
    }
    return range;
}

bool isPlainPCM(const AudioContainer& container) {
    const auto codec = container.stream().codecpar->codec_id;
    return codec >= AV_CODEC_ID_FIRST_AUDIO && codec < AV_CODEC_ID_ADPCM_IMA_QT &&
           lateFFmpeg(av_get_exact_bits_per_sample)(codec) > 0;
}

// For frames of a fixed size: the file's size gives their number.
std::optional<Range> plainRange(AudioContainer& container) {
    const FFmpegPointer<AVPacket> packet(lateFFmpeg(av_packet_alloc)());
    const auto& parameters = *container.stream().codecpar;
    const std::int64_t frameBytes =
        std::int64_t{lateFFmpeg(av_get_exact_bits_per_sample)(parameters.codec_id)} *
        parameters.ch_layout.nb_channels / 8;
    if (!packet || frameBytes <= 0 || !container.readPacket(*packet) || packet->pos < 0) {
        return std::nullopt;
    }
    // FFmpeg shortens the stated length to what the file holds.
    if (missingWaveBytes(container.file()).value_or(0) > 0) {
        refuseAsShort(container);
    }
    const auto held = (container.file().size() - packet->pos) / frameBytes;
    const auto stated = container.stream().duration;
    if (stated == AV_NOPTS_VALUE || stated <= 0) {
        return Range{0, held};
    }
    if (stated > held) {
        refuseAsShort(container);
    }
    return Range{0, stated};
}

std::optional<Range> oggRange(AudioContainer& container, int rate) {
    const FFmpegPointer<AVPacket> packet(lateFFmpeg(av_packet_alloc)());
    const auto granule = oggLastGranule(container.file(), container.stream().index);
    if (!granule) {
        refuseAsShort(container);
    }
    const auto codec = container.stream().codecpar->codec_id;
    const bool isCountedInFrames =
        codec == AV_CODEC_ID_VORBIS || codec == AV_CODEC_ID_OPUS || codec == AV_CODEC_ID_FLAC;
    if (!isCountedInFrames || !packet || !container.readPacket(*packet)) {
        return std::nullopt;
    }
    const auto start = std::max<std::int64_t>(inFrames(packet->pts, container, rate), 0);
    const auto preSkip =
        codec == AV_CODEC_ID_OPUS ? container.stream().codecpar->initial_padding : 0;
    return Range{start, *granule - preSkip};
}

// The range that the Xing header states, where FFmpeg finds the same length.
std::optional<Range> mp3Range(AudioContainer& container, int rate) {
    const auto header = readMp3Header(container.file());
    const auto stated = container.stream().duration;
    if (!header || stated == AV_NOPTS_VALUE ||
        inFrames(stated, container, rate) != header->decodedFrames) {
        return std::nullopt;
    }
    if (header->start + header->bytes > container.file().size()) {
        refuseAsShort(container);
    }
    return Range{header->priming, header->decodedFrames - header->padding};
}

// FLAC states its length in its header; the last frame must be whole.
std::optional<Range> flacRange(AudioContainer& container) {
    const auto stated = container.stream().duration;
    if (stated == AV_NOPTS_VALUE || stated <= 0) {
        return std::nullopt;
    }
    PacketDecoder decoder(container.file());
    if (!decoder.seek(stated - 1)) {
        decoder.restart();
    }
    std::int64_t end = 0;
    while (decoder.decodeNext()) {
        end = decoder.frameEnd();
    }
    if (end < stated) {
        refuseAsShort(container);
    }
    return Range{0, stated};
}

// Every packet that the header lists must lie in the file, and their times must reach mediaFrames.
void checkMoviePackets(AudioContainer& container, std::int64_t mediaFrames, int rate) {
    AVStream& stream = container.stream();
    const int count = lateFFmpeg(avformat_index_get_entries_count)(&stream);
    const auto size = container.file().size();
    std::int64_t most = 0;
    for (int index = 0; index < count; ++index) {
        const auto* entry = lateFFmpeg(avformat_index_get_entry)(&stream, index);
        if (entry->pos + entry->size > size) {
            refuseAsShort(container);
        }
        // At most one frame a byte.
        most = std::max(most, inFrames(entry->timestamp, container, rate) + entry->size);
    }
    if (count > 0 && mediaFrames > most + 2 * kMostFramesPerByte) {
        refuseAsShort(container);
    }
}

// The priming and the length, in frames, that an encoder stated.
struct ITunesTag {
    std::int64_t priming = 0;
    std::int64_t frames = 0;
};

// Reads iTunSMPB: " 00000000 <priming> <padding> <frames> ...", hexadecimal.
std::optional<ITunesTag> readITunesTag(const AudioContainer& container) {
    const auto* entry = lateFFmpeg(av_dict_get)(container.context().metadata, "iTunSMPB", nullptr,
                                                AV_DICT_IGNORE_SUFFIX);
    unsigned priming = 0;
    unsigned padding = 0;
    unsigned long long frames = 0;
    if (entry == nullptr ||
        std::sscanf(entry->value, "%*x %x %x %llx", &priming, &padding, &frames) != 3 ||
        frames == 0 || frames > (1ULL << 48U)) {
        return std::nullopt;
    }
    return ITunesTag{priming, static_cast<std::int64_t>(frames)};
}

std::vector<Segment> movieSegments(const AudioContainer& container, const MovieHeader& header,
                                   std::int64_t mediaFrames, int rate) {
    const auto tag = readITunesTag(container);
    const bool isTagWithin = tag && tag->priming + tag->frames <= mediaFrames;
    if (header.edits.empty()) {
        return {isTagWithin ? Segment{tag->priming, tag->frames} : Segment{0, mediaFrames}};
    }
    const AVRational movieTick{1, static_cast<int>(header.movieTimeScale)};
    const AVRational mediaTick{1, static_cast<int>(header.mediaTimeScale)};
    const auto tickFrames = static_cast<std::int64_t>(std::ceil(av_q2d(movieTick) * rate));
    std::vector<Segment> segments;
    for (const auto& edit : header.edits) {
        auto frames = lateFFmpeg(av_rescale_q)(edit.duration, movieTick, {1, rate});
        if (edit.mediaStart < 0) {
            segments.push_back({AudioTimeline::kSilence, frames});
            continue;
        }
        // Movie time is often coarser than a frame, so iTunSMPB or the media's end is used where it
        // agrees with the edit within a tick.
        const auto start = lateFFmpeg(av_rescale_q)(edit.mediaStart, mediaTick, {1, rate});
        const auto rest = mediaFrames - start;
        if (isTagWithin && tag->priming == start && std::abs(tag->frames - frames) <= tickFrames) {
            frames = tag->frames;
        } else if (edit.duration == 0 || frames > rest || rest - frames < tickFrames) {
            frames = rest;
        }
        segments.push_back({start, frames});
    }
    return segments;
}

std::optional<std::vector<Segment>> movieTimeline(AudioContainer& container, int rate) {
    const auto header =
        readMovieHeader(container.file(), static_cast<std::uint32_t>(container.stream().id));
    if (!header || header->movieTimeScale > INT32_MAX || header->mediaTimeScale > INT32_MAX) {
        return std::nullopt;
    }
    auto mediaFrames = lateFFmpeg(av_rescale_q)(
        header->mediaDuration, {1, static_cast<int>(header->mediaTimeScale)}, {1, rate});
    checkMoviePackets(container, mediaFrames, rate);
    if (mediaFrames == 0) {  // Fragments state their own times.
        mediaFrames = scannedRange(container, rate).end;
    }
    return movieSegments(container, *header, mediaFrames, rate);
}

std::vector<Segment> segmentsOf(AudioContainer& container, int rate) {
    std::optional<Range> range;
    if (container.isKind("mov")) {
        if (auto segments = movieTimeline(container, rate)) {
            return *segments;
        }
    } else if (isPlainPCM(container)) {
        range = plainRange(container);
    } else if (container.isKind("ogg")) {
        range = oggRange(container, rate);
    } else if (container.isKind("mp3")) {
        range = mp3Range(container, rate);
    } else if (container.isKind("flac")) {
        range = flacRange(container);
    }
    if (!range) {
        range = scannedAndStatedRange(container, rate);
    }
    return {Segment{range->start, range->end - range->start}};
}

}  // namespace

AudioTimeline statedTimeline(AudioContainer& container, const AVAudioFormat& decoded) {
    const auto most = container.file().size() * kMostFramesPerByte;
    AudioTimeline timeline;
    for (const auto& segment : segmentsOf(container, static_cast<int>(decoded.sampleRate))) {
        if (segment.frameCount <= 0) {
            continue;
        }
        if (segment.frameCount > most - timeline.length) {
            refuseAsShort(container);
        }
        timeline.length += segment.frameCount;
        timeline.segments.push_back(segment);
    }
    if (timeline.length == 0) {
        throw refusal(FileRefusal::noLength, container.file().path(), "its sound has no length");
    }
    return timeline;
}

}  // namespace orvalo
