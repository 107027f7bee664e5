#include "platform/foundation/defaults/SearchList.h"

#include <pthread.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/foundation/defaults/DefaultsPlaces.h"

namespace orvalo {

SearchList& SearchList::shared() {
    // Never destroyed: threads may still ask for it while the process ends.
    static auto& list = *new SearchList;
    return list;
}

// Forks begin with what was registered last: this list, and then the domains, as readers lock them.
SearchList::SearchList() : own_(DefaultsDomain::of(ownDomainFile().string())) {
    pthread_atfork([] { shared().beginFork(); }, [] { shared().endFork(false); },
                   [] { shared().endFork(true); });
}

bool SearchList::holds(std::string_view name) const {
    const std::shared_lock lock(mutex_);
    return std::ranges::find(suites_, name, &Suite::name) != suites_.end();
}

void SearchList::add(std::string_view name, std::shared_ptr<DefaultsDomain> domain) {
    const std::lock_guard lock(mutex_);
    if (std::ranges::find(suites_, name, &Suite::name) == suites_.end()) {
        suites_.push_back({std::string(name), std::move(domain)});
    }
}

void SearchList::beginFork() {
    mutex_.lock();
}

void SearchList::endFork(bool isChild) {
    if (isChild) {
        // A lock for reading and writing knows its writer by a number that the child does not have.
        std::construct_at(&mutex_);
    } else {
        mutex_.unlock();
    }
}

}  // namespace orvalo
