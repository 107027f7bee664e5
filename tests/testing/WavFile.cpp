#include "tests/testing/WavFile.h"

#include <fstream>
#include <random>
#include <string_view>

namespace orvalo::testing {

namespace {

class LittleEndianFile {
  public:
    explicit LittleEndianFile(const std::filesystem::path& path)
        : stream_(path, std::ios::binary) {}
    void tag(std::string_view text) {
        stream_.write(text.data(), static_cast<std::streamsize>(text.size()));
    }
    template <typename Number>
    void number(Number value) {
        // The format is little-endian, and so are the machines that run these tests.
        stream_.write(reinterpret_cast<const char*>(&value), sizeof value);
    }

  private:
    std::ofstream stream_;
};

}  // namespace

void writeWav(const std::filesystem::path& path, std::uint32_t sampleRate, const Signal& signal) {
    const auto channels = static_cast<std::uint16_t>(signal.size());
    const auto frames = signal.front().size();
    const auto bytes = static_cast<std::uint32_t>(frames * channels * sizeof(float));
    LittleEndianFile file(path);
    file.tag("RIFF");
    file.number(std::uint32_t{36} + bytes);
    file.tag("WAVEfmt ");
    file.number(std::uint32_t{16});
    file.number(std::uint16_t{3});  // IEEE float
    file.number(channels);
    file.number(sampleRate);
    file.number(static_cast<std::uint32_t>(sizeof(float) * sampleRate * channels));
    file.number(static_cast<std::uint16_t>(channels * sizeof(float)));
    file.number(std::uint16_t{32});
    file.tag("data");
    file.number(bytes);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        for (const auto& channel : signal) {
            file.number(channel[frame]);
        }
    }
}

Signal noise(std::uint32_t channels, std::size_t frames, std::uint32_t seed) {
    std::minstd_rand generator(seed);
    Signal signal(channels, std::vector<float>(frames));
    for (auto& channel : signal) {
        for (auto& sample : channel) {
            sample = static_cast<float>(generator() % 2000001U) * 1e-6F - 1.0F;
        }
    }
    return signal;
}

}  // namespace orvalo::testing
