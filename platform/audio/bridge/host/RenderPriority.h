#pragma once

#include <sched.h>

namespace orvalo {

/// How an effect's thread is to run.
struct EffectScheduling {
    int policy = SCHED_OTHER;  ///< As sched_setscheduler has it, without its flags.
    int priority = 0;
    /// Whether the two may share a processor: the host's thread goes on there whatever the effect's
    /// does, as long as that has this scheduling.
    bool maySharePlace = true;
};

/// Takes the lead over the effects' threads: a thread of a real-time priority goes one step above
/// the one that it was given, for as long as it lives, and leaves that one to them. Where this is
/// refused they are to stay one step below. Says the same to every effect of the thread. The
/// calling thread's, which renders in real time.
EffectScheduling takeLead() noexcept;

}  // namespace orvalo
