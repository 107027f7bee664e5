#pragma once

#include <memory>

#include "platform/foundation/defaults/UserDefaults.h"

namespace orvalo {

/// What the application adds to the platform's store. Both are made afresh at every call. Any
/// thread.
struct UserDefaultsViews {
    /// A store for the suite of the application group, sharedContainer. One that cannot be had is a
    /// fatal error.
    static std::shared_ptr<UserDefaults> shared();

    /// UserDefaults::standard(), after the group's suite was added to its search list: from the
    /// first call on, every read of the standard store in this process falls back on the group's
    /// suite.
    static std::shared_ptr<UserDefaults> combined();
};

}  // namespace orvalo
