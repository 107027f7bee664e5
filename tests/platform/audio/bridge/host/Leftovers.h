#pragma once

#include <sys/types.h>

#include <cstddef>
#include <iosfwd>
#include <set>

namespace orvalo::testing {

/// The system resources of this process, to compare before and after.
struct Leftovers {
    std::size_t descriptors = 0;
    std::size_t sharedMaps = 0;  ///< Of memory shared with services.
    std::set<pid_t> children;    ///< Including zombies.
    std::size_t threads = 0;

    static Leftovers now();
    /// Waits up to 10 s until the resources equal `wanted`, because the system lists a joined
    /// thread for a moment longer. Returns the last resources seen.
    static Leftovers settled(const Leftovers& wanted);

    friend bool operator==(const Leftovers&, const Leftovers&) = default;
};

std::ostream& operator<<(std::ostream& stream, const Leftovers& leftovers);

/// The child processes of this process.
std::set<pid_t> children();
/// The services that this process has started, which are children of it or of bubblewrap.
std::set<pid_t> services();
/// The only child process, and the only service; throw std::runtime_error when there is none or
/// another one. kill() takes 0 and -1 for all processes of a group or of the machine.
pid_t onlyChild();
pid_t onlyService();
/// The child processes of this process, their child processes, and so on.
std::set<pid_t> descendants();
/// Whether the process exists and is no zombie.
bool isAlive(pid_t process);

}  // namespace orvalo::testing
