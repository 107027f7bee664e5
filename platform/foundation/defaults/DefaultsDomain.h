#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/foundation/defaults/DefaultsStorage.h"
#include "platform/foundation/defaults/PropertyList.h"

namespace orvalo {

/// The entries of one domain: in memory, and as all processes share them. Any thread.
///
/// A read compares the change counter, which takes no system call, and looks at the file only when
/// it has moved.
class DefaultsDomain {
  public:
    /// The domain of a file; the process has one at a time for each.
    static std::shared_ptr<DefaultsDomain> of(const std::string& path);

    explicit DefaultsDomain(std::string path);
    ~DefaultsDomain();
    DefaultsDomain(const DefaultsDomain&) = delete;
    DefaultsDomain& operator=(const DefaultsDomain&) = delete;

    /// Reads what there is, creating the file where it is missing. Throws NSError. Without it, the
    /// first read or write does the same.
    void open();

    /// Hands the key's value to the visitor, under a lock: it is short and asks for no settings.
    /// Returns whether there is one. A domain that cannot be read has the entries that it had when
    /// it could, with one line on standard error.
    template <typename Visitor>
    bool visit(std::string_view key, const Visitor& visitor) {
        const auto lock = freshEntries();
        const auto found = entries_.find(key);
        if (found == entries_.end()) {
            return false;
        }
        visitor(found->second);
        return true;
    }
    /// Adds the entries whose keys are not there.
    void addTo(PropertyList::Dictionary& dictionary);
    /// Stores a value, or removes the key. What cannot be stored is left as it was, with one line
    /// on standard error.
    void set(std::string_view key, const std::optional<PropertyList>& value);

    /// Stores and removes all these together; when isWhole, removes all others. When it throws
    /// NSError, whose text names a key that cannot be stored, all is as it was.
    void change(DefaultsChanges changes);

    /// Around a fork: waits for the other threads' operations and lets the files go.
    void beginFork();
    void endFork(bool isChild);

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>()(text);
        }
    };
    using Entries = std::unordered_map<std::string, PropertyList, Hash, std::equal_to<>>;

    /// Holds the entries as they are now.
    std::shared_lock<std::shared_mutex> freshEntries();
    bool isFresh() const { return counter_ && counter_->count() == count_; }
    void refresh();
    void apply(DefaultsStorage::Update&& update);

    std::mutex storageMutex_;  ///< Before the other where both are taken.
    DefaultsStorage storage_;
    std::string lastTrouble_;

    std::shared_mutex entriesMutex_;
    Entries entries_;
    std::shared_ptr<const ChangeMapping> counter_;
    std::uint64_t count_ = 1;  ///< What the entries agree with; odd: they may be old.
};

}  // namespace orvalo
