#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "animation/AnimationSequencer.h"
#include "tests/animation/Counting.h"

namespace orvalo {

/// Access to a sequencer's private state.
struct AnimationSequencerPeer {
    static auto& animators(AnimationSequencer& sequencer) { return sequencer._animators; }
    static std::int64_t& currentIndex(AnimationSequencer& sequencer) {
        return sequencer._currentIndex;
    }
    static std::int64_t& currentFrame(AnimationSequencer& sequencer) {
        return sequencer._currentFrame;
    }
    static std::int64_t maxFrames(const AnimationSequencer& sequencer) {
        return sequencer._maxFrames;
    }
};

namespace testing {

/// Ticks `count` times as the timer does: advances the frame counter, then animates.
inline void tickOn(AnimationSequencer& sequencer, int count = 1) {
    for (int done = 0; done < count; ++done) {
        ++AnimationSequencerPeer::currentFrame(sequencer);
        sequencer.animate();
    }
}

/// An animator and its start frame.
struct Placed {
    std::shared_ptr<Animator> animator;
    std::int64_t frame;
};

/// A sequencer of the animators, added in this order.
inline std::shared_ptr<AnimationSequencer> sequence(const std::vector<Placed>& placed) {
    auto sequencer = std::make_shared<AnimationSequencer>();
    for (const auto& [animator, frame] : placed) {
        sequencer->add(animator, frame);
    }
    return sequencer;
}

/// A sequencer of the animators that records its callbacks.
inline std::shared_ptr<AnimationSequencer> recorded(const std::vector<Placed>& placed,
                                                    Lines& lines) {
    auto sequencer = sequence(placed);
    Members members;
    for (const auto& entry : placed) {
        members.push_back(entry.animator);
    }
    sequencer->onAnimation = [&lines, members](const auto& self, const auto& item) {
        lines.push_back(std::to_string(self->getCurrentFrame()) + ": before " +
                        nameOf(item, members));
    };
    sequencer->onFinished = [&lines](const auto& self) {
        lines.push_back(std::to_string(self->getCurrentFrame()) + ": finished with " +
                        std::to_string(self->getCurrentCount()));
    };
    return sequencer;
}

}  // namespace testing
}  // namespace orvalo
