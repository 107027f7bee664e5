#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace orvalo::testing {

/// Channels of samples, all of one length.
using Signal = std::vector<std::vector<float>>;

/// Writes a wav file of 32-bit floats, which any reader gives back bit by bit.
void writeWav(const std::filesystem::path& path, std::uint32_t sampleRate, const Signal& signal);

/// Noise that never repeats a sample nearby: what is lost, repeated or moved shows. The same for
/// the same seed.
Signal noise(std::uint32_t channels, std::size_t frames, std::uint32_t seed);

}  // namespace orvalo::testing
