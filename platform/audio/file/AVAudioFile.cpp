#include "platform/audio/file/AVAudioFile.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "platform/audio/file/AudioTimeline.h"
#include "platform/audio/file/FileRefusal.h"
#include "platform/audio/file/LocalFile.h"
#include "platform/audio/file/PacketDecoder.h"
#include "platform/audio/file/PlanarFloat.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

// A header that states a rate outside this range is damaged.
constexpr int kLowestRate = 1000;
constexpr int kHighestRate = 768000;

// Up to so many frames are skipped by decoding rather than by a seek.
constexpr std::int64_t kMostDecodedSkip = 65536;

// Seconds by which rounded times may state more than the packets hold.
constexpr double kRoundedTimes = 0.05;

// The format of the first decoded frame: headers do not always state it.
AVAudioFormat decodedFormat(PacketDecoder& decoder, const std::string& path) {
    if (!decoder.decodeNext()) {
        throw refusal(FileRefusal::notDecodable, path, "holds no sound that can be decoded");
    }
    const int rate = decoder.frame().sample_rate;
    const int channels = decoder.frame().ch_layout.nb_channels;
    if (channels > static_cast<int>(kMaximumChannels)) {
        throw refusal(FileRefusal::tooManyChannels, path,
                      "has " + std::to_string(channels) + " channels, more than " +
                          std::to_string(kMaximumChannels));
    }
    if (rate < kLowestRate || rate > kHighestRate) {
        throw refusal(FileRefusal::rateOutOfRange, path,
                      "has a sample rate of " + std::to_string(rate) + " Hz, outside " +
                          std::to_string(kLowestRate) + " to " + std::to_string(kHighestRate));
    }
    return {static_cast<double>(rate), static_cast<std::uint32_t>(channels)};
}

}  // namespace

struct AVAudioFile::Reader {
    explicit Reader(const URL& place)
        : url(place),
          file(place.path()),
          decoder(file),
          format(decodedFormat(decoder, file.path())),
          timeline(statedTimeline(*std::make_unique<AudioContainer>(file), format)) {}

    void read(AVAudioPCMBuffer& into);
    std::uint32_t readSome(const AudioBlock& output);
    std::uint32_t readDecoded(std::int64_t from, const AudioBlock& output);
    bool reach(std::int64_t target);
    bool isFitting(const AVFrame& frame) const;
    void warn();

    const URL url;
    const LocalFile file;
    PacketDecoder decoder;
    const AVAudioFormat format;
    const AudioTimeline timeline;
    std::int64_t position = 0;
    std::int64_t decodedPosition = 0;  // The decoder may have passed all frames before this one.
    bool hasFrame = true;
    bool hasEnded = false;
    bool hasWarned = false;
};

void AVAudioFile::Reader::warn() {
    if (!std::exchange(hasWarned, true)) {
        g_warning("%s: damaged near %.3f seconds; silence stands for what cannot be decoded.",
                  file.path().c_str(), static_cast<double>(position) / format.sampleRate);
    }
}

bool AVAudioFile::Reader::isFitting(const AVFrame& frame) const {
    return frame.sample_rate == static_cast<int>(format.sampleRate) &&
           frame.ch_layout.nb_channels == static_cast<int>(format.channelCount);
}

// Decodes until the current frame ends behind target; false when there is no such frame.
bool AVAudioFile::Reader::reach(std::int64_t target) {
    try {
        const bool isBehind = target < decodedPosition;
        const bool isFar = target > decodedPosition + kMostDecodedSkip;
        if (isBehind || (isFar && decoder.canSeek())) {
            hasEnded = false;
            hasFrame = false;
            if (!decoder.seek(target) && isBehind) {
                decoder.restart();
            }
        }
        while (!hasEnded &&
               (!hasFrame || decoder.frameEnd() <= target || !isFitting(decoder.frame()))) {
            hasFrame = decoder.decodeNext();
            hasEnded = !hasFrame;
            if (decoder.hadDamage()) {
                warn();
            }
        }
    } catch (const NSError&) {  // The file was damaged after it was opened.
        hasFrame = false;
        hasEnded = true;
    }
    decodedPosition = target;
    return !hasEnded;
}

std::uint32_t AVAudioFile::Reader::readDecoded(std::int64_t from, const AudioBlock& output) {
    AudioBlock part = output;
    if (!reach(from)) {
        const bool isRounding =
            !decoder.hasExactTimes() &&
            static_cast<double>(timeline.length - position) < kRoundedTimes * format.sampleRate;
        if (!isRounding) {
            warn();
        }
        silence(part);
    } else if (decoder.frameStart() > from) {
        part.frameCount = static_cast<std::uint32_t>(
            std::min<std::int64_t>(part.frameCount, decoder.frameStart() - from));
        warn();
        silence(part);
    } else {
        part.frameCount = static_cast<std::uint32_t>(
            std::min<std::int64_t>(part.frameCount, decoder.frameEnd() - from));
        if (!writePlanarFloat(decoder.frame(),
                              static_cast<std::uint32_t>(from - decoder.frameStart()), part)) {
            warn();
            silence(part);
        }
    }
    decodedPosition = from + part.frameCount;
    return part.frameCount;
}

// Fills the start of output, at most to the end of the present segment; returns the frames.
std::uint32_t AVAudioFile::Reader::readSome(const AudioBlock& output) {
    std::int64_t start = 0;
    for (const auto& segment : timeline.segments) {
        const auto into = position - start;
        if (into < segment.frameCount) {
            AudioBlock part = output;
            part.frameCount = static_cast<std::uint32_t>(
                std::min<std::int64_t>(part.frameCount, segment.frameCount - into));
            if (segment.decodedStart == AudioTimeline::kSilence) {
                silence(part);
                return part.frameCount;
            }
            return readDecoded(segment.decodedStart + into, part);
        }
        start += segment.frameCount;
    }
    return 0;
}

void AVAudioFile::Reader::read(AVAudioPCMBuffer& into) {
    const auto wanted = static_cast<std::uint32_t>(
        std::min<std::int64_t>(into.frameCapacity(), timeline.length - position));
    std::array<float*, kMaximumChannels> pointers{};
    std::uint32_t done = 0;
    while (done < wanted) {
        const auto count = readSome(into.block(done, wanted - done, pointers));
        done += count;
        position += count;
    }
    into.frameLength = done;
}

AVAudioFile::AVAudioFile(std::unique_ptr<Reader> reader) : reader_(std::move(reader)) {}

AVAudioFile::~AVAudioFile() = default;

std::shared_ptr<AVAudioFile> AVAudioFile::forReading(const URL& url) {
    return std::shared_ptr<AVAudioFile>(new AVAudioFile(std::make_unique<Reader>(url)));
}

const URL& AVAudioFile::url() const {
    return reader_->url;
}

const AVAudioFormat& AVAudioFile::processingFormat() const {
    return reader_->format;
}

std::int64_t AVAudioFile::length() const {
    return reader_->timeline.length;
}

std::int64_t AVAudioFile::framePosition() const {
    return reader_->position;
}

void AVAudioFile::setFramePosition(std::int64_t position) {
    reader_->position = std::clamp<std::int64_t>(position, 0, reader_->timeline.length);
}

void AVAudioFile::read(AVAudioPCMBuffer& into) {
    if (into.format() != reader_->format) {
        fatalError("A file is read into a buffer of its own format.");
    }
    reader_->read(into);
}

}  // namespace orvalo
