// Performs every verb in every callback of every kind of animation on a run loop. The address
// sanitizer finds objects that are freed too early or never.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "animation/Ticking.h"
#include "tests/animation/CallbackVerbs.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo {
namespace {

using testing::Callback;
using testing::counting;
using testing::Members;
using testing::Verb;
using testing::waitUntil;

/// Runs the calling thread's loop for five more ticks.
void runSomeTicks() {
    int ticks = 0;
    auto clock = startTicking(testing::kVerbInterval, [&ticks] { ++ticks; });
    EXPECT_TRUE(waitUntil([&ticks] { return ticks >= 5; }));
    stopTicking(clock);
}

template <typename Kind>
class CallbackOf : public ::testing::Test {
  protected:
    /// Starts an object on a thread; its callback performs the verb the first time. The end of the
    /// thread ends its timers.
    void perform(const Callback<Kind>& callback, const std::function<void()>& verb) {
        std::thread([this, &callback, &verb] {
            members_ = {counting(2), counting(3)};
            object_ = testing::VerbKit<Kind>::make(members_);
            if constexpr (requires { object_->interval; }) {
                object_->interval = testing::kVerbInterval;
            }
            const std::vector<std::weak_ptr<NSObject>> living{object_, members_[0], members_[1]};
            int calls = 0;
            callback.install(*object_, members_, [&calls, &verb] {
                if (++calls == 1) {
                    verb();
                }
            });
            object_->start();
            EXPECT_TRUE(waitUntil([&calls] { return calls > 0; }));
            runSomeTicks();
            object_ = nullptr;
            members_.clear();
            watched_ = living;
        }).join();
        for (const auto& object : watched_) {
            EXPECT_TRUE(object.expired());
        }
    }

    std::shared_ptr<Kind> object_;
    Members members_;

  private:
    std::vector<std::weak_ptr<NSObject>> watched_;
};

using Kinds = ::testing::Types<Animator, AnimatorStack, AnimatorChain, AnimationSequencer, Impulse>;
TYPED_TEST_SUITE(CallbackOf, Kinds);

/// A member of a stack that ends after its removal is a fatal error.
template <typename Kind>
bool isFatal(const Callback<Kind>& callback, const Verb<Kind>& verb) {
    return std::is_same_v<Kind, AnimatorStack> && callback.name == "onFinished of the first" &&
           (verb.name == "stop" || verb.name == "stop and start");
}

TYPED_TEST(CallbackOf, MayPerformEveryVerb) {
    const testing::CapturedOutput output;
    for (const auto& callback : testing::VerbKit<TypeParam>::callbacks()) {
        for (const auto& verb : testing::VerbKit<TypeParam>::verbs()) {
            SCOPED_TRACE(callback.name + ": " + verb.name);
            if (!isFatal(callback, verb)) {
                this->perform(callback,
                              [this, &verb] { verb.run(*this->object_, this->members_); });
            }
        }
    }
}

TYPED_TEST(CallbackOf, KeepsItsOwnState) {
    const Members members{counting(9), counting(9)};
    const auto object = testing::VerbKit<TypeParam>::make(members);
    std::vector<int> seen;
    object->onAnimation =
        testing::running([&seen, count = 0]() mutable { seen.push_back(++count); });
    object->animate();
    object->animate();
    ASSERT_GE(seen.size(), 2U);
    for (std::size_t call = 0; call < seen.size(); ++call) {
        EXPECT_EQ(seen[call], static_cast<int>(call) + 1);
    }
}

TYPED_TEST(CallbackOf, MayReleaseEverything) {
    for (const auto& callback : testing::VerbKit<TypeParam>::callbacks()) {
        SCOPED_TRACE(callback.name);
        this->perform(callback, [this] {
            this->object_ = nullptr;
            this->members_.clear();
        });
    }
}

}  // namespace
}  // namespace orvalo
