#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace orvalo::testing {

/// Samples by channel; all channels have one length.
using Signal = std::vector<std::vector<float>>;

/// Writes a wav file of 32-bit floats, which readers return bit by bit.
void writeWav(const std::filesystem::path& path, std::uint32_t sampleRate, const Signal& signal);

/// Full-scale noise, different in each channel and without repetitions nearby, so that lost,
/// repeated and moved samples show. Equal for equal seeds.
Signal noise(std::uint32_t channels, std::size_t frames, std::uint32_t seed = 1);

}  // namespace orvalo::testing
