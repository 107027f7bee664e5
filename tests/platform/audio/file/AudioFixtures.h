#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/audio/file/AVAudioFile.h"

namespace orvalo::testing {

using Channels = std::vector<std::vector<float>>;

/// A signal that shows every shift: two sines that rise, in each channel others. Peak 0.6.
Channels risingSines(double rate, std::size_t channels, std::size_t frames);

/// Noise, as some coders replace it by their own. Peak 0.3.
Channels noise(std::size_t channels, std::size_t frames);

/// The samples as a WAV file of 16 bits; what a reader then gives is those, rounded.
void writeWav(const std::filesystem::path& path, const Channels& signal, double rate);

/// Runs ffmpeg from one file (or a colour, "color=...") to another with these arguments between;
/// throws when that fails.
void encode(const std::filesystem::path& from, const std::filesystem::path& to,
            const std::vector<std::string>& arguments = {});

/// A file of the signal by its name's extension, encoded by ffmpeg with these arguments.
void writeEncoded(const std::filesystem::path& path, const Channels& signal, double rate,
                  const std::vector<std::string>& arguments = {});

std::shared_ptr<AVAudioFile> open(const std::filesystem::path& path);

/// What is left of the file, read in buffers of this many frames.
Channels readOn(AVAudioFile& file, std::uint32_t bufferFrames = 4096);

/// The message with which the file is refused; "" when it is opened.
std::string refusalOf(const std::filesystem::path& path);

std::string bytesOf(const std::filesystem::path& path);
void writeBytes(const std::filesystem::path& path, const std::string& bytes);

/// Signal to noise in dB of heard against original in frames [from, to), heard being late by lag.
double agreement(const Channels& original, const Channels& heard, std::size_t from, std::size_t to,
                 std::ptrdiff_t lag = 0);

/// The lag in [-64, 64] at which both agree best in frames [from, to).
std::ptrdiff_t bestLag(const Channels& original, const Channels& heard, std::size_t from,
                       std::size_t to);

}  // namespace orvalo::testing
