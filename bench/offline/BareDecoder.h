#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace orvalo::bench {

/// Decodes a file's first audio stream with libavformat and libavcodec alone, on the calling
/// thread. The stream must decode to planar floats in stereo, as AAC does.
class BareDecoder {
  public:
    /// Throws std::runtime_error for any other file.
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
    /// The next frames, valid until the next call.
    Frames next();

  private:
    struct State;
    const std::unique_ptr<State> state_;
};

}  // namespace orvalo::bench
