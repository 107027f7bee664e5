#include "platform/foundation/defaults/SearchList.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "platform/foundation/defaults/DefaultsPlaces.h"

namespace orvalo {

SearchList& SearchList::shared() {
    // Never destroyed: threads may still ask for it while the process ends.
    static auto& list = *new SearchList;
    return list;
}

SearchList::SearchList() : own_(DefaultsDomain::of(ownDomainFile().string())) {}

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

}  // namespace orvalo
