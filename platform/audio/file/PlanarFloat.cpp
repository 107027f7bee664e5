#include "platform/audio/file/PlanarFloat.h"

#include <cstddef>
#include <cstring>
#include <limits>
#include <type_traits>

#include "platform/audio/file/FFmpeg.h"

namespace orvalo {

namespace {

template <typename Sample>
float toFloat(Sample sample) {
    if constexpr (std::is_floating_point_v<Sample>) {
        return static_cast<float>(sample);
    } else if constexpr (std::is_unsigned_v<Sample>) {
        return (static_cast<float>(sample) - 128.0F) / 128.0F;
    } else {
        constexpr double kScale = 1.0 / -static_cast<double>(std::numeric_limits<Sample>::min());
        return static_cast<float>(static_cast<double>(sample) * kScale);
    }
}

template <typename Sample>
void write(const AVFrame& frame, std::uint32_t from, const AudioBlock& output, bool isPlanar) {
    const auto stride =
        isPlanar ? std::size_t{1} : static_cast<std::size_t>(frame.ch_layout.nb_channels);
    for (std::uint32_t channel = 0; channel < output.channelCount; ++channel) {
        const auto* plane =
            reinterpret_cast<const Sample*>(frame.extended_data[isPlanar ? channel : 0]);
        const Sample* source = plane + from * stride + (isPlanar ? 0 : channel);
        float* const target = output.channels[channel];
        if constexpr (std::is_same_v<Sample, float>) {
            if (isPlanar) {
                std::memcpy(target, source, output.frameCount * sizeof(float));
                continue;
            }
        }
        for (std::uint32_t index = 0; index < output.frameCount; ++index) {
            target[index] = toFloat(source[index * stride]);
        }
    }
}

}  // namespace

bool writePlanarFloat(const AVFrame& frame, std::uint32_t from, const AudioBlock& output) {
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool isPlanar = lateFFmpeg(av_sample_fmt_is_planar)(format) != 0;
    switch (lateFFmpeg(av_get_packed_sample_fmt)(format)) {
        case AV_SAMPLE_FMT_U8:
            write<std::uint8_t>(frame, from, output, isPlanar);
            return true;
        case AV_SAMPLE_FMT_S16:
            write<std::int16_t>(frame, from, output, isPlanar);
            return true;
        case AV_SAMPLE_FMT_S32:
            write<std::int32_t>(frame, from, output, isPlanar);
            return true;
        case AV_SAMPLE_FMT_S64:
            write<std::int64_t>(frame, from, output, isPlanar);
            return true;
        case AV_SAMPLE_FMT_FLT:
            write<float>(frame, from, output, isPlanar);
            return true;
        case AV_SAMPLE_FMT_DBL:
            write<double>(frame, from, output, isPlanar);
            return true;
        default:
            return false;
    }
}

}  // namespace orvalo
