#include "bench/offline/Floor.h"

#include <algorithm>
#include <cstdint>

#include "bench/measuring/Clocks.h"
#include "bench/offline/BareDecoder.h"
#include "bench/offline/BareEffect.h"

namespace orvalo::bench {

namespace {

double measureDecoding(const std::filesystem::path& file) {
    const auto begin = threadNanoseconds();
    BareDecoder decoder(file);
    while (decoder.next().count != 0) {
    }
    return inSeconds(threadNanoseconds() - begin);
}

double measureEffect(const std::filesystem::path& file) {
    BareDecoder decoder(file);
    BareEffect effect(decoder.sampleRate());
    std::int64_t spent = 0;
    std::uint32_t filled = 0;
    for (auto frames = decoder.next(); frames.count != 0; frames = decoder.next()) {
        for (std::uint32_t done = 0; done < frames.count;) {
            const auto count = std::min(frames.count - done, BareEffect::blockFrames - filled);
            std::copy_n(frames.left + done, count, effect.input(0).begin() + filled);
            std::copy_n(frames.right + done, count, effect.input(1).begin() + filled);
            done += count;
            filled += count;
            if (filled == BareEffect::blockFrames) {
                const auto begin = threadNanoseconds();
                effect.run();
                spent += threadNanoseconds() - begin;
                filled = 0;
            }
        }
    }
    return inSeconds(spent);
}

}  // namespace

Floor measureFloor(const std::filesystem::path& file) {
    return {measureDecoding(file), measureEffect(file)};
}

}  // namespace orvalo::bench
