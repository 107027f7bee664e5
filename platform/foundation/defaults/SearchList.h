#pragma once

#include <memory>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/defaults/DefaultsDomain.h"

namespace orvalo {

/// Where the process looks for settings: its own domain, then the suites that were added, in this
/// order. Any thread; a fork waits for those that are looking.
class SearchList {
  public:
    static SearchList& shared();

    /// Adds a suite at the end, unless it is there.
    void add(std::string_view name, std::shared_ptr<DefaultsDomain> domain);
    bool holds(std::string_view name) const;

    const std::shared_ptr<DefaultsDomain>& own() const { return own_; }

    /// Calls the operation with one domain after the other until it returns true.
    template <typename Operation>
    void look(const Operation& operation) const {
        if (operation(*own_)) {
            return;
        }
        const std::shared_lock lock(mutex_);
        for (const auto& suite : suites_) {
            if (operation(*suite.domain)) {
                return;
            }
        }
    }

  private:
    struct Suite {
        std::string name;
        std::shared_ptr<DefaultsDomain> domain;
    };

    SearchList();
    void beginFork();
    void endFork(bool isChild);

    std::shared_ptr<DefaultsDomain> own_;
    mutable std::shared_mutex mutex_;  ///< Before the domains' where both are taken.
    std::vector<Suite> suites_;
};

}  // namespace orvalo
