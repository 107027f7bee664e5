#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/audio/file/AVAudioFile.h"
#include "tests/testing/FileBytes.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {

using Channels = Signal;

/// Two rising sines, different in each channel, that reveal every shift. Peak 0.6.
Channels risingSines(double rate, std::size_t channels, std::size_t frames);

/// Converts one file (or a colour, "color=...") to another by ffmpeg with these arguments. Throws
/// when that fails.
void encode(const std::filesystem::path& from, const std::filesystem::path& to,
            const std::vector<std::string>& arguments = {});

/// Encodes the signal by ffmpeg with these arguments, in the format of the name's extension.
void writeEncoded(const std::filesystem::path& path, const Channels& signal, double rate,
                  const std::vector<std::string>& arguments = {});

std::shared_ptr<AVAudioFile> open(const std::filesystem::path& path);

/// Reads the rest of the file in buffers of this many frames.
Channels readOn(AVAudioFile& file, std::uint32_t bufferFrames = 4096);

/// The error of opening the file; "" when it opens.
std::string refusalOf(const std::filesystem::path& path);

/// Signal to noise of heard against original in frames [from, to), in dB. heard is late by lag.
double agreement(const Channels& original, const Channels& heard, std::size_t from, std::size_t to,
                 std::ptrdiff_t lag = 0);

/// The lag in [-64, 64] at which heard agrees best with original in frames [from, to).
std::ptrdiff_t bestLag(const Channels& original, const Channels& heard, std::size_t from,
                       std::size_t to);

}  // namespace orvalo::testing
