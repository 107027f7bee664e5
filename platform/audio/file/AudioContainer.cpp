#include "platform/audio/file/AudioContainer.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "platform/audio/file/FileRefusal.h"
#include "platform/foundation/FatalError.h"

namespace orvalo {

namespace {

// Sound containers only: playlists and scripts name other files.
constexpr const char* kKinds = "mov,wav,w64,flac,mp3,ogg,aac,aiff,au,caf,matroska,wv,tta,ape,amr";

constexpr int kInputBytes = 32768;

// FFmpeg's score for an MP3 stream that begins with two good frames. One good frame can be chance,
// unless a tag precedes it.
constexpr int kLeastProbeScore = 5;
constexpr std::string_view kTag = "ID3";

bool beginsWithTag(const LocalFile& file) {
    std::array<std::uint8_t, kTag.size()> bytes{};
    return file.read(0, bytes) == bytes.size() && std::ranges::equal(bytes, kTag);
}

// So many unreadable packets in a row end the stream.
constexpr int kMostFailuresInARow = 64;

int refuseToOpen(AVFormatContext* /*context*/, AVIOContext** /*input*/, const char* /*url*/,
                 int /*flags*/, AVDictionary** /*options*/) {
    return AVERROR(EACCES);
}

}  // namespace

int AudioContainer::readBytes(void* self, std::uint8_t* bytes, int count) {
    auto& container = *static_cast<AudioContainer*>(self);
    const auto done = container.file_.read(container.position_,
                                           std::span(bytes, static_cast<std::size_t>(count)));
    container.position_ += static_cast<std::int64_t>(done);
    return done == 0 ? AVERROR_EOF : static_cast<int>(done);
}

std::int64_t AudioContainer::seekBytes(void* self, std::int64_t offset, int whence) {
    auto& container = *static_cast<AudioContainer*>(self);
    switch (whence & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return container.file_.size();
        case SEEK_CUR:
            offset += container.position_;
            break;
        case SEEK_END:
            offset += container.file_.size();
            break;
        default:
            break;
    }
    if (offset < 0) {
        return AVERROR(EINVAL);
    }
    return container.position_ = offset;
}

AudioContainer::AudioContainer(const LocalFile& file) : file_(file) {
    if (file.size() == 0) {
        throw refusal(FileRefusal::empty, file.path(), "the file is empty");
    }
    auto* bytes = static_cast<std::uint8_t*>(lateFFmpeg(av_malloc)(kInputBytes));
    input_.reset(
        lateFFmpeg(avio_alloc_context)(bytes, kInputBytes, 0, this, readBytes, nullptr, seekBytes));
    if (bytes == nullptr || !input_) {
        fatalError("No memory to open an audio file.");
    }
    context_.reset(openContext());
    AVFormatContext* const context = context_.get();
    lateFFmpeg(avformat_find_stream_info)(context, nullptr);
    for (unsigned index = 0; index < context->nb_streams; ++index) {
        AVStream* const stream = context->streams[index];
        if (stream_ == nullptr && stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO) {
            stream_ = stream;
        } else {
            stream->discard = AVDISCARD_ALL;
        }
    }
    if (stream_ == nullptr) {
        throw refusal(FileRefusal::noAudio, file.path(), "holds no sound");
    }
}

// Opens the context over input_ when the file is of one of kKinds.
AVFormatContext* AudioContainer::openContext() {
    const AVInputFormat* kind = nullptr;
    const int score = lateFFmpeg(av_probe_input_buffer2)(input_.get(), &kind, "", nullptr, 0, 0);
    if (score < 0 || kind == nullptr || lateFFmpeg(av_match_list)(kind->name, kKinds, ',') == 0 ||
        (score < kLeastProbeScore && !beginsWithTag(file_))) {
        throw refusal(FileRefusal::unknownKind, file_.path(), "not a sound file of a known kind");
    }
    AVFormatContext* context = lateFFmpeg(avformat_alloc_context)();
    if (context == nullptr) {
        fatalError("No memory to open an audio file.");
    }
    context->pb = input_.get();
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->io_open = refuseToOpen;
    lateFFmpeg(av_opt_set)(context, "format_whitelist", kKinds, 0);
    // The timeline reads the edit list itself: FFmpeg applies it by whole packets.
    AVDictionary* options = nullptr;
    lateFFmpeg(av_dict_set_int)(&options, "ignore_editlist", 1, 0);
    const int opened = lateFFmpeg(avformat_open_input)(&context, nullptr, kind, &options);
    lateFFmpeg(av_dict_free)(&options);
    if (opened < 0) {
        throw refusal(FileRefusal::brokenHeader, file_.path(), "its header is damaged or cut off");
    }
    return context;
}

AudioContainer::~AudioContainer() = default;

bool AudioContainer::isKind(const char* name) const {
    return lateFFmpeg(av_match_name)(name, context_->iformat->name) != 0;
}

bool AudioContainer::readPacket(AVPacket& packet) {
    for (int failures = 0; failures < kMostFailuresInARow;) {
        lateFFmpeg(av_packet_unref)(&packet);
        const int result = lateFFmpeg(av_read_frame)(context_.get(), &packet);
        if (result == AVERROR_EOF) {
            return false;
        }
        if (result < 0) {
            ++failures;
        } else if (packet.stream_index == stream_->index) {
            return true;
        }
    }
    return false;
}

bool AudioContainer::seek(std::int64_t timeStamp) {
    return lateFFmpeg(av_seek_frame)(context_.get(), stream_->index, timeStamp,
                                     AVSEEK_FLAG_BACKWARD) >= 0;
}

}  // namespace orvalo
