#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace orvalo {

class Animator;

/// Animators in the order of their addition; an animator may be added more than once. Finding and
/// removing one takes constant time, because many may end on one tick. A walk copies nothing unless
/// the list changes during it.
///
/// A removed entry leaves a hole; a walk closes the holes when they outnumber the members. An index
/// maps each animator to its entries.
class AnimatorList {
  public:
    using Item = std::shared_ptr<Animator>;

    void append(const Item& item);
    bool contains(const Item& item) const;
    /// Removes the first entry of the animator; false when there is none.
    bool removeFirst(const Item& item);
    /// Removes all entries and frees their storage.
    void removeAll();

    std::int64_t count() const;
    bool isEmpty() const { return count() == 0; }
    std::vector<Item> items() const;

    /// Calls visit(item) for each entry in order. Changes that visit makes to the list do not
    /// affect the walk.
    template <typename Visit>
    void walk(Visit visit) {
        if (2 * holes_ > entries_->size()) {
            closeHoles();
        }
        const auto walked = entries_;  // Shared, so changeable() copies the list first.
        for (const auto& entry : *walked) {
            if (entry.item) {
                visit(entry.item);
            }
        }
    }

  private:
    struct Entry {
        Item item;                  ///< Null in a hole.
        std::size_t nextOfSame{0};  ///< The animator's next entry, unless this is its last.
    };
    using Entries = std::vector<Entry>;
    struct Places {
        std::size_t first;
        std::size_t last;
    };

    Entries& changeable();
    void closeHoles();

    std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
    std::unordered_map<const Animator*, Places> places_;
    std::size_t holes_ = 0;
};

}  // namespace orvalo
