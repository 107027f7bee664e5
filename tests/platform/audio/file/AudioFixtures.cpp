#include "tests/platform/audio/file/AudioFixtures.h"

#include <glib.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <stdexcept>

#include "platform/foundation/NSError.h"

namespace orvalo::testing {

namespace {

constexpr double kTwoPi = 6.283185307179586;

}  // namespace

Channels risingSines(double rate, std::size_t channels, std::size_t frames) {
    Channels signal(channels, std::vector<float>(frames));
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const double base = 300.0 + 100.0 * static_cast<double>(channel);
        for (std::size_t frame = 0; frame < frames; ++frame) {
            const double time = static_cast<double>(frame) / rate;
            signal[channel][frame] =
                static_cast<float>(0.4 * std::cos(kTwoPi * (base + 400.0 * time) * time) +
                                   0.2 * std::cos(kTwoPi * (4.0 * base + 900.0 * time) * time));
        }
    }
    return signal;
}

void encode(const std::filesystem::path& from, const std::filesystem::path& to,
            const std::vector<std::string>& arguments) {
    std::vector<std::string> words{"ffmpeg", "-v", "error", "-y", "-threads", "1"};
    if (from.string().starts_with("color=")) {
        words.insert(words.end(), {"-f", "lavfi"});
    }
    words.insert(words.end(), {"-i", from});
    words.insert(words.end(), arguments.begin(), arguments.end());
    words.push_back(to);
    std::vector<char*> pointers;
    std::ranges::transform(words, std::back_inserter(pointers),
                           [](std::string& word) { return word.data(); });
    pointers.push_back(nullptr);
    int status = 0;
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL);
    if (g_spawn_sync(nullptr, pointers.data(), nullptr, flags, nullptr, nullptr, nullptr, nullptr,
                     &status, nullptr) == FALSE ||
        status != 0) {
        throw std::runtime_error("ffmpeg did not make " + to.string());
    }
}

void writeEncoded(const std::filesystem::path& path, const Channels& signal, double rate,
                  const std::vector<std::string>& arguments) {
    auto wav = path;
    wav += ".source.wav";
    writeWav(wav, static_cast<std::uint32_t>(rate), signal);
    encode(wav, path, arguments);
}

std::shared_ptr<AVAudioFile> open(const std::filesystem::path& path) {
    return AVAudioFile::forReading(URL::fileURLWithPath(path.string()));
}

Channels readOn(AVAudioFile& file, std::uint32_t bufferFrames) {
    AVAudioPCMBuffer buffer(file.processingFormat(), bufferFrames);
    Channels heard(file.processingFormat().channelCount);
    do {
        file.read(buffer);
        for (std::size_t channel = 0; channel < heard.size(); ++channel) {
            const float* samples = buffer.floatChannelData()[channel];
            heard[channel].insert(heard[channel].end(), samples, samples + buffer.frameLength);
        }
    } while (buffer.frameLength > 0);
    return heard;
}

std::string refusalOf(const std::filesystem::path& path) {
    try {
        open(path);
    } catch (const NSError& error) {
        return error.localizedDescription();
    }
    return "";
}

double agreement(const Channels& original, const Channels& heard, std::size_t from, std::size_t to,
                 std::ptrdiff_t lag) {
    double signal = 0.0;
    double error = 1e-12;
    for (std::size_t channel = 0; channel < original.size(); ++channel) {
        for (std::size_t frame = from; frame < to; ++frame) {
            const auto place = static_cast<std::ptrdiff_t>(frame) + lag;
            const bool isThere = place >= 0 && place < std::ssize(heard[channel]);
            const double expected = original[channel][frame];
            const double got = isThere ? heard[channel][static_cast<std::size_t>(place)] : 0.0F;
            signal += expected * expected;
            error += (expected - got) * (expected - got);
        }
    }
    return 10.0 * std::log10(signal / error);
}

std::ptrdiff_t bestLag(const Channels& original, const Channels& heard, std::size_t from,
                       std::size_t to) {
    std::ptrdiff_t best = 0;
    double most = -std::numeric_limits<double>::infinity();
    for (std::ptrdiff_t lag = -64; lag <= 64; ++lag) {
        const double value = agreement(original, heard, from, to, lag);
        if (value > most) {
            most = value;
            best = lag;
        }
    }
    return best;
}

}  // namespace orvalo::testing
