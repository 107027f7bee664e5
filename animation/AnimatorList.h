#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace orvalo {

class Animator;

/// Animators in the order in which they came; the same one may stand there more than once. Made for
/// lists of which many members go on one tick: finding and removing one costs the same however many
/// there are, and a walk copies nothing unless the list changes meanwhile.
///
/// A removed entry leaves a hole, a walk that finds more holes than members closes them first, and
/// an index tells for each animator where it stands.
class AnimatorList {
  public:
    using Item = std::shared_ptr<Animator>;

    void append(const Item& item);
    bool contains(const Item& item) const;
    /// Removes the first entry that holds this very animator; false when there is none.
    bool removeFirst(const Item& item);
    /// Removes all entries and gives their storage back.
    void removeAll();

    std::int64_t count() const;
    bool isEmpty() const { return count() == 0; }
    /// A copy.
    std::vector<Item> items() const;

    /// Calls visit(item) for each entry that there is now, in order, whatever becomes of the list
    /// meanwhile.
    template <typename Visit>
    void walk(Visit visit) {
        if (2 * holes_ > entries_->size()) {
            closeHoles();
        }
        const auto walked = entries_;  // Who changes the list while this is held, changes a copy.
        for (const auto& entry : *walked) {
            if (entry.item) {
                visit(entry.item);
            }
        }
    }

  private:
    struct Entry {
        Item item;                    ///< None in a hole.
        std::size_t nextOfItsOwn{0};  ///< Where its animator stands next, unless this is the last.
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
