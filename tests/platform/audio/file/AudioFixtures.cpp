#include "tests/platform/audio/file/AudioFixtures.h"

#include <glib.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>
#include <stdexcept>

#include "platform/foundation/NSError.h"

namespace orvalo::testing {

namespace {

constexpr double kTwoPi = 6.283185307179586;

void append(std::string& bytes, std::uint64_t value, std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
        bytes.push_back(static_cast<char>(value >> (8 * index) & 0xFFU));
    }
}

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

Channels noise(std::size_t channels, std::size_t frames) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> sample(-0.3F, 0.3F);
    Channels signal(channels, std::vector<float>(frames));
    for (auto& channel : signal) {
        std::ranges::generate(channel, [&] { return sample(random); });
    }
    return signal;
}

void writeWav(const std::filesystem::path& path, const Channels& signal, double rate) {
    const auto frames = signal.front().size();
    const auto frameBytes = 2 * signal.size();
    std::string bytes = "RIFF";
    append(bytes, 36 + frames * frameBytes, 4);
    bytes += "WAVEfmt ";
    append(bytes, 16, 4);
    append(bytes, 1, 2);
    append(bytes, signal.size(), 2);
    append(bytes, static_cast<std::uint64_t>(rate), 4);
    append(bytes, static_cast<std::uint64_t>(rate) * frameBytes, 4);
    append(bytes, frameBytes, 2);
    append(bytes, 16, 2);
    bytes += "data";
    append(bytes, frames * frameBytes, 4);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        for (const auto& channel : signal) {
            append(bytes, static_cast<std::uint64_t>(std::lround(channel[frame] * 32768.0F)), 2);
        }
    }
    writeBytes(path, bytes);
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
    writeWav(wav, signal, rate);
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

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
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
