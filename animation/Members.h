#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "animation/Animator.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/Print.h"

namespace orvalo {

using Members = std::vector<std::shared_ptr<Animator>>;

/// The end of a program that relied on an animator to be in a list.
[[noreturn]] inline void failForMissingMember() {
    fatalError("Unexpectedly found nil while unwrapping an Optional value");
}

/// Removes the first entry of the animator; one that is no member is a fatal error.
inline void removeMember(Members& members, const std::shared_ptr<Animator>& item) {
    const auto found = std::find(members.begin(), members.end(), item);
    if (found == members.end()) {
        failForMissingMember();
    }
    // Kept to the end: with an animator goes what its callbacks hold, which may come back here.
    const auto removed = *found;
    members.erase(found);
}

/// Empties the list and gives its storage back.
inline void removeAllMembers(Members& members) {
    const auto removed = std::exchange(members, {});
}

/// What is printed when there is nothing to animate.
inline void warnOfNoMembers() {
    print("WARNUNG: Es sind keine Animator Objekte definiert.");
}

}  // namespace orvalo
