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

/// Ends the program because an animator is not in a list.
[[noreturn]] inline void failForMissingMember() {
    fatalError("Unexpectedly found nil while unwrapping an Optional value");
}

/// Removes the first entry of the animator. An animator that is not a member is a fatal error.
inline void removeMember(Members& members, const std::shared_ptr<Animator>& item) {
    const auto found = std::find(members.begin(), members.end(), item);
    if (found == members.end()) {
        failForMissingMember();
    }
    // Destroyed last: the animator's callbacks may own objects whose destructors use this list.
    const auto removed = *found;
    members.erase(found);
}

/// Removes all members, then destroys them, and frees the storage.
inline void removeAllMembers(Members& members) {
    const auto removed = std::exchange(members, {});
}

/// Prints the warning that there is nothing to animate.
inline void warnOfNoMembers() {
    print("WARNUNG: Es sind keine Animator Objekte definiert.");
}

}  // namespace orvalo
