#include "demos/sound/LoopFold.h"

namespace orvalo {

StereoSound fold(const StereoSound& sound, std::size_t frames) {
    StereoSound loop;
    loop.resize(frames);
    for (std::size_t frame = 0; frame < sound.frames(); ++frame) {
        loop.left[frame % frames] += sound.left[frame];
        loop.right[frame % frames] += sound.right[frame];
    }
    return loop;
}

}  // namespace orvalo
