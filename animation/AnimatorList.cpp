#include "animation/AnimatorList.h"

#include <utility>

#include "animation/Animator.h"

namespace orvalo {

void AnimatorList::append(const Item& item) {
    auto& entries = changeable();
    const auto place = entries.size();
    entries.push_back({item});
    const auto [found, isNew] = places_.try_emplace(item.get(), Places{place, place});
    if (!isNew) {
        entries[found->second.last].nextOfSame = place;
        found->second.last = place;
    }
}

bool AnimatorList::contains(const Item& item) const {
    return places_.contains(item.get());
}

bool AnimatorList::removeFirst(const Item& item) {
    const auto found = places_.find(item.get());
    if (found == places_.end()) {
        return false;
    }
    auto& entries = changeable();
    auto& [first, last] = found->second;
    // Destroyed last: the animator's callbacks may own objects whose destructors use this list.
    const auto removed = std::exchange(entries[first].item, nullptr);
    if (first == last) {
        places_.erase(found);
    } else {
        first = entries[first].nextOfSame;
    }
    ++holes_;
    return true;
}

void AnimatorList::removeAll() {
    const auto removed = std::exchange(*this, AnimatorList());
}

std::int64_t AnimatorList::count() const {
    return static_cast<std::int64_t>(entries_->size() - holes_);
}

std::vector<AnimatorList::Item> AnimatorList::items() const {
    std::vector<Item> result;
    result.reserve(entries_->size() - holes_);
    for (const auto& entry : *entries_) {
        if (entry.item) {
            result.push_back(entry.item);
        }
    }
    return result;
}

AnimatorList::Entries& AnimatorList::changeable() {
    if (entries_.use_count() > 1) {
        entries_ = std::make_shared<Entries>(*entries_);
    }
    return *entries_;
}

void AnimatorList::closeHoles() {
    AnimatorList closed;
    for (const auto& item : items()) {
        closed.append(item);
    }
    *this = std::move(closed);
}

}  // namespace orvalo
