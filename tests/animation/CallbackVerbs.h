#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "animation/AnimationSequencer.h"
#include "animation/AnimatorChain.h"
#include "animation/AnimatorStack.h"
#include "animation/Impulse.h"
#include "tests/animation/Counting.h"

namespace orvalo::testing {

/// An operation that a callback performs. members: of the group, in order.
template <typename Kind>
struct Verb {
    std::string name;
    std::function<void(Kind& self, const Members& members)> run;
};

/// A callback; install() makes it run a block.
template <typename Kind>
struct Callback {
    std::string name;
    std::function<void(Kind& self, const Members& members, std::function<void()> block)> install;
};

/// The verbs and callbacks of a kind; make() creates an object with these members.
template <typename Kind>
struct VerbKit;

constexpr float kVerbInterval = 0.0005F;

/// A callback that ignores its arguments and runs the block.
inline auto running(std::function<void()> block) {
    return [block = std::move(block)](const auto&...) { block(); };
}

template <typename Kind>
std::vector<Verb<Kind>> verbsOfAll() {
    return {{"start", [](auto& self, const auto&) { self.start(); }},
            {"stop", [](auto& self, const auto&) { self.stop(); }},
            {"stop and start",
             [](auto& self, const auto&) {
                 self.stop();
                 self.start();
             }},
            {"animate", [](auto& self, const auto&) { self.animate(); }},
            {"clear the callbacks", [](auto& self, const auto&) {
                 self.onAnimation = nullptr;
                 self.onFinished = nullptr;
             }}};
}

template <typename Kind>
std::vector<Callback<Kind>> callbacksOfAll() {
    return {{"onAnimation",
             [](auto& self, const auto&, auto block) { self.onAnimation = running(block); }},
            {"onFinished",
             [](auto& self, const auto&, auto block) { self.onFinished = running(block); }}};
}

/// The verbs of a group and of its members.
template <typename Kind>
std::vector<Verb<Kind>> verbsOfGroups() {
    auto result = verbsOfAll<Kind>();
    const auto add = [&result](const std::string& name, auto verb) {
        result.push_back({name, [verb](auto&, const auto& members) {
                              for (const auto& member : members) {
                                  verb(*member);
                              }
                          }});
    };
    add("start its members", [](auto& member) { member.start(); });
    add("stop its members", [](auto& member) { member.stop(); });
    add("set up its members", [](auto& member) { member.setup(0, 1, 2, kVerbInterval); });
    add("undo its members", [](auto& member) { member.undo(); });
    add("rewind its members", [](auto& member) { member.rewind(); });
    add("step its members", [](auto& member) { member.animate(); });
    return result;
}

/// The callbacks of a group and of its members.
template <typename Kind>
std::vector<Callback<Kind>> callbacksOfGroups() {
    auto result = callbacksOfAll<Kind>();
    result.push_back({"onAnimation of the second", [](auto&, const auto& members, auto block) {
                          members[1]->onAnimation = running(block);
                      }});
    result.push_back({"onFinished of the first", [](auto&, const auto& members, auto block) {
                          members[0]->onFinished = running(block);
                      }});
    return result;
}

template <typename Entry>
std::vector<Entry> operator+(std::vector<Entry> entries, const std::vector<Entry>& more) {
    entries.insert(entries.end(), more.begin(), more.end());
    return entries;
}

template <>
struct VerbKit<Animator> {
    static auto make(const Members& /*members*/) {
        return std::make_shared<Animator>(0.0F, 3.0F, 3, kVerbInterval);
    }
    static auto callbacks() {
        return callbacksOfAll<Animator>() +
               std::vector<Callback<Animator>>{{"onLoop", [](auto& self, const auto&, auto block) {
                                                    self.looped = true;
                                                    self.onLoop = running(block);
                                                }}};
    }
    static auto verbs() {
        return verbsOfAll<Animator>() +
               std::vector<Verb<Animator>>{
                   {"set up", [](auto& self, const auto&) { self.setup(5, 6, 2, kVerbInterval); }},
                   {"reverse", [](auto& self, const auto&) { self.reverse(); }},
                   {"undo", [](auto& self, const auto&) { self.undo(); }},
                   {"rewind", [](auto& self, const auto&) { self.rewind(); }},
                   {"set the curve",
                    [](auto& self, const auto&) {
                        self.setType(EnumEasing::EASING_easeOutInBack);
                    }},
                   {"set the interval",
                    [](auto& self, const auto&) { self.setInterval(kVerbInterval); }}};
    }
};

template <>
struct VerbKit<AnimatorStack> {
    static auto make(const Members& members) { return groupOf<AnimatorStack>(members); }
    static auto callbacks() {
        return callbacksOfGroups<AnimatorStack>() +
               std::vector<Callback<AnimatorStack>>{
                   {"onRemovedItem", [](auto& self, const auto&, auto block) {
                        self.onRemovedItem = running(block);
                    }}};
    }
    static auto verbs() {
        return verbsOfGroups<AnimatorStack>() +
               std::vector<Verb<AnimatorStack>>{
                   {"add another", [](auto& self, const auto&) { self.add(counting(2)); }},
                   {"add the first again",
                    [](auto& self, const auto& members) { self.add(members[0]); }}};
    }
};

template <>
struct VerbKit<AnimatorChain> {
    static auto make(const Members& members) { return groupOf<AnimatorChain>(members); }
    static auto callbacks() { return callbacksOfGroups<AnimatorChain>(); }
    static auto verbs() {
        return verbsOfGroups<AnimatorChain>() +
               std::vector<Verb<AnimatorChain>>{
                   {"add another", [](auto& self, const auto&) { self.add(counting(2)); }},
                   {"remove the first",
                    [](auto& self, const auto& members) { self.remove(members[0]); }},
                   {"remove the second",
                    [](auto& self, const auto& members) { self.remove(members[1]); }},
                   {"remove all", [](auto& self, const auto&) { self.removeAll(); }},
                   {"turn round", [](auto& self, const auto&) { self.setBackwards(true); }},
                   {"start the rest", [](auto& self, const auto&) { self.async = true; }}};
    }
};

template <>
struct VerbKit<AnimationSequencer> {
    static auto make(const Members& members) {
        auto sequencer = std::make_shared<AnimationSequencer>();
        for (std::size_t place = 0; place < members.size(); ++place) {
            sequencer->add(members[place], static_cast<std::int64_t>(place));
        }
        return sequencer;
    }
    static auto callbacks() { return callbacksOfGroups<AnimationSequencer>(); }
    static auto verbs() {
        return verbsOfGroups<AnimationSequencer>() +
               std::vector<Verb<AnimationSequencer>>{
                   {"add another", [](auto& self, const auto&) { self.add(counting(2), 0); }},
                   {"remove the first",
                    [](auto& self, const auto& members) { self.remove(members[0]); }},
                   {"remove the second",
                    [](auto& self, const auto& members) { self.remove(members[1]); }},
                   {"remove all", [](auto& self, const auto&) { self.removeAll(); }},
                   {"pause", [](auto& self, const auto&) { self.pause(); }},
                   {"rewind", [](auto& self, const auto&) { self.rewind(); }},
                   {"seek back", [](auto& self, const auto&) { self.seek(0); }},
                   {"seek beyond", [](auto& self, const auto&) { self.seek(100); }}};
    }
};

template <>
struct VerbKit<Impulse> {
    static auto make(const Members& /*members*/) {
        auto impulse = std::make_shared<Impulse>(1, 8.0F, kVerbInterval, 0.25F);
        impulse->setMinMax(true, -1, 1);
        return impulse;
    }
    static auto callbacks() {
        return callbacksOfAll<Impulse>() +
               std::vector<Callback<Impulse>>{
                   {"onCollision", [](auto& self, const auto&, auto block) {
                        self.onCollision = running(block);
                    }}};
    }
    static auto verbs() {
        return verbsOfAll<Impulse>() +
               std::vector<Verb<Impulse>>{
                   {"set up", [](auto& self, const auto&) { self.setup(1, 2.0F, kVerbInterval); }},
                   {"set the bounds",
                    [](auto& self, const auto&) { self.setMinMax(true, 1, -1); }}};
    }
};

}  // namespace orvalo::testing
