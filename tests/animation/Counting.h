#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "animation/Animator.h"

namespace orvalo::testing {

using Lines = std::vector<std::string>;

/// An animator that is set up for so many frames, at least one, and whose value is the frame that
/// it has come to.
inline std::shared_ptr<Animator> counting(std::int64_t frames) {
    return std::make_shared<Animator>(0.0F, static_cast<float>(frames), frames);
}

/// One that never ends.
inline std::shared_ptr<Animator> endless() {
    auto result = counting(1);
    result->looped = true;
    return result;
}

/// Has the animator write down its own callbacks under its name.
inline void record(const std::shared_ptr<Animator>& animator, const std::string& name,
                   Lines& lines) {
    animator->onAnimation = [name, &lines](const auto&, float value) {
        lines.push_back(name + " leaves " + std::to_string(static_cast<int>(value)));
    };
    animator->onFinished = [name, &lines](const auto&, float value) {
        lines.push_back(name + " ends at " + std::to_string(static_cast<int>(value)));
    };
}

/// A member of a group, by name.
inline std::string nameOf(const std::shared_ptr<Animator>& animator,
                          const std::vector<std::shared_ptr<Animator>>& members) {
    for (std::size_t index = 0; index < members.size(); ++index) {
        if (members[index] == animator) {
            return std::string(1, static_cast<char>('A' + index));
        }
    }
    return "?";
}

/// So many ticks of the group's own, by hand.
template <typename Group>
void tick(Group& group, int count = 1) {
    for (int done = 0; done < count; ++done) {
        group.animate();
    }
}

}  // namespace orvalo::testing
