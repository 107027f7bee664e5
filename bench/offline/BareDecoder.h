#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace orvalo::bench {

/// A file's first audio stream, read and decoded with libavformat and libavcodec and nothing else,
/// on the calling thread. Frames are planar floats in stereo, as the AAC decoder gives them.
class BareDecoder {
  public:
    /// Throws std::runtime_error when the file is not such a file.
    explicit BareDecoder(const std::filesystem::path& file);
    ~BareDecoder();
    BareDecoder(const BareDecoder&) = delete;
    BareDecoder& operator=(const BareDecoder&) = delete;

    int sampleRate() const;

    struct Frames {
        const float* left;
        const float* right;
        std::uint32_t count;  ///< 0 at the end.
    };
    /// The next frames, which live until the next call.
    Frames next();

  private:
    struct State;
    const std::unique_ptr<State> state_;
};

}  // namespace orvalo::bench
