#pragma once

#include <sys/types.h>

#include <cstddef>
#include <set>
#include <string>

namespace orvalo::testing {

/// What this process holds of the system, to be compared before and after.
struct Leftovers {
    std::size_t descriptors = 0;
    std::size_t sharedMaps = 0;  ///< Of memory shared with effects.
    std::set<pid_t> children;    ///< Zombies among them.
    std::size_t threads = 0;

    static Leftovers now();
    /// The same, as soon as it is what is wanted; after many seconds as it is then. A thread that
    /// has been joined stands in the system's list for a moment longer.
    static Leftovers settled(const Leftovers& wanted);

    friend bool operator==(const Leftovers&, const Leftovers&) = default;
};

std::ostream& operator<<(std::ostream& stream, const Leftovers& leftovers);

/// The processes that this one has started and that are still there.
std::set<pid_t> children();
/// Whether there is a process of that number that is more than a zombie.
bool isAlive(pid_t process);

}  // namespace orvalo::testing
