#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "animation/Animator.h"
#include "tests/testing/Lines.h"

namespace orvalo::testing {

using Members = std::vector<std::shared_ptr<Animator>>;

/// An animator of `frames` frames, at least one, whose value is the number of its current frame.
inline std::shared_ptr<Animator> counting(std::int64_t frames) {
    return std::make_shared<Animator>(0.0F, static_cast<float>(frames), frames);
}

/// An animator that never ends.
inline std::shared_ptr<Animator> endless() {
    auto result = counting(1);
    result->looped = true;
    return result;
}

/// An animator whose overridden operations end it with its second step.
class TwoSteps : public Animator {
  public:
    int steps = 0;
    int starts = 0;

    void animate() override { ++steps; }
    bool isFinished() const override { return steps == 2; }
    void start() override { ++starts; }
};

/// Records the callbacks of an animator under its name.
inline void record(const std::shared_ptr<Animator>& animator, const std::string& name,
                   Lines& lines) {
    animator->onAnimation = [name, &lines](const auto&, float value) {
        lines.push_back(name + " leaves " + std::to_string(static_cast<int>(value)));
    };
    animator->onFinished = [name, &lines](const auto&, float value) {
        lines.push_back(name + " ends at " + std::to_string(static_cast<int>(value)));
    };
}

/// The name of a member: its position as a letter.
inline std::string nameOf(const std::shared_ptr<Animator>& animator, const Members& members) {
    for (std::size_t index = 0; index < members.size(); ++index) {
        if (members[index] == animator) {
            return {static_cast<char>('A' + index)};
        }
    }
    return "?";
}

/// A stack or a chain of the members.
template <typename Group>
std::shared_ptr<Group> groupOf(const Members& members) {
    auto group = std::make_shared<Group>();
    for (const auto& member : members) {
        group->add(member);
    }
    return group;
}

/// A stack or a chain of the members that records each onAnimation.
template <typename Group>
std::shared_ptr<Group> recordedGroupOf(const Members& members, Lines& lines) {
    auto group = groupOf<Group>(members);
    group->onAnimation = [&lines, members](const auto&, const auto& item) {
        lines.push_back("before " + nameOf(item, members));
    };
    return group;
}

/// The warning of a chain or sequencer without members.
inline const std::string kNoMembers = "WARNUNG: Es sind keine Animator Objekte definiert.";

/// Calls animate() `count` times.
template <typename Group>
void tick(Group& group, int count = 1) {
    for (int done = 0; done < count; ++done) {
        group.animate();
    }
}

}  // namespace orvalo::testing
