#include "platform/foundation/defaults/DefaultsDomains.h"

#include <pthread.h>

#include "platform/foundation/defaults/DefaultsDomain.h"

namespace orvalo {

DefaultsDomains& DefaultsDomains::shared() {
    // Never destroyed: threads may still ask for it while the process ends.
    static auto& domains = *new DefaultsDomains;
    return domains;
}

DefaultsDomains::DefaultsDomains() {
    pthread_atfork([] { shared().beginFork(); }, [] { shared().endFork(false); },
                   [] { shared().endFork(true); });
}

std::shared_ptr<DefaultsDomain> DefaultsDomains::domain(const std::string& path) {
    const std::lock_guard lock(mutex_);
    auto& known = domains_[path];
    auto domain = known.lock();
    if (!domain) {
        std::erase_if(domains_, [&](const auto& entry) {
            return entry.first != path && entry.second.expired();
        });
        domain = std::make_shared<DefaultsDomain>(path);
        known = domain;
    }
    return domain;
}

void DefaultsDomains::beginFork() {
    mutex_.lock();
    for (const auto& [path, known] : domains_) {
        if (auto domain = known.lock()) {
            domain->beginFork();
            held_.push_back(std::move(domain));
        }
    }
}

void DefaultsDomains::endFork(bool isChild) {
    for (const auto& domain : held_) {
        domain->endFork(isChild);
    }
    held_.clear();
    mutex_.unlock();
}

}  // namespace orvalo
