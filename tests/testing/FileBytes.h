#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace orvalo::testing {

/// The content of a file; empty when it cannot be read.
inline std::string bytesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Writes a file with this content.
inline void writeBytes(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

}  // namespace orvalo::testing
