#include "platform/foundation/defaults/DefaultsDomain.h"

#include <glib.h>

#include <iterator>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DefaultsDomains.h"
#include "platform/foundation/defaults/PropertyListCoding.h"
#include "platform/foundation/defaults/PropertyListError.h"

namespace orvalo {

namespace {

void checkKey(const std::string& key) {
    if (g_utf8_validate_len(key.data(), key.size(), nullptr) == FALSE) {
        throw propertyListError("its key is not UTF-8 or holds a NUL");
    }
}

}  // namespace

std::shared_ptr<DefaultsDomain> DefaultsDomain::of(const std::string& path) {
    return DefaultsDomains::shared().domain(path);
}

DefaultsDomain::DefaultsDomain(std::string path) : storage_(std::move(path)) {}

DefaultsDomain::~DefaultsDomain() = default;

void DefaultsDomain::open() {
    const std::lock_guard storageLock(storageMutex_);
    auto update = storage_.refresh();
    const std::lock_guard lock(entriesMutex_);
    apply(std::move(update));
}

std::shared_lock<std::shared_mutex> DefaultsDomain::freshEntries() {
    std::shared_lock lock(entriesMutex_);
    if (!isFresh()) {
        lock.unlock();
        refresh();
        lock.lock();
    }
    return lock;
}

void DefaultsDomain::refresh() {
    const std::lock_guard storageLock(storageMutex_);
    {
        const std::shared_lock lock(entriesMutex_);
        if (isFresh()) {
            return;
        }
    }
    try {
        auto update = storage_.refresh();
        const std::lock_guard lock(entriesMutex_);
        apply(std::move(update));
        lastTrouble_.clear();
    } catch (const NSError& error) {
        if (std::exchange(lastTrouble_, error.what()) != error.what()) {
            g_warning("The settings in %s cannot be read: %s.", storage_.path().c_str(),
                      error.what());
        }
    }
}

void DefaultsDomain::apply(DefaultsStorage::Update&& update) {
    if (update.changes.isWhole) {
        entries_.clear();
    }
    for (auto& [key, value] : update.changes.entries) {
        if (value) {
            entries_.insert_or_assign(std::move(key), std::move(*value));
        } else {
            entries_.erase(key);
        }
    }
    counter_ = std::move(update.counter);
    count_ = (update.count & 1U) != 0 ? 1 : update.count;
}

void DefaultsDomain::addTo(PropertyList::Dictionary& dictionary) {
    const auto lock = freshEntries();
    for (const auto& [key, value] : entries_) {
        dictionary.emplace(key, value);
    }
}

void DefaultsDomain::set(std::string_view key, const std::optional<PropertyList>& value) {
    DefaultsChanges::Entry entry{std::string(key), value};
    try {
        checkKey(entry.key);
        const auto bytes = value ? binaryPropertyList(*value) : Data();
        const std::lock_guard storageLock(storageMutex_);
        auto update = storage_.put(
            entry.key, value ? std::optional(std::span<const std::uint8_t>(bytes)) : std::nullopt);
        update.changes.entries.push_back(std::move(entry));
        const std::lock_guard lock(entriesMutex_);
        apply(std::move(update));
    } catch (const NSError& error) {
        g_warning("'%s' in %s stays as it was: %s.", entry.key.c_str(), storage_.path().c_str(),
                  error.what());
    }
}

void DefaultsDomain::change(DefaultsChanges changes) {
    std::vector<Data> values;
    values.reserve(changes.entries.size());
    std::vector<BinaryEntry> entries;
    for (const auto& [key, value] : changes.entries) {
        try {
            checkKey(key);
            values.push_back(value ? binaryPropertyList(*value) : Data());
        } catch (const NSError& error) {
            throw propertyListError("'" + key + "': " + error.what());
        }
        entries.push_back({key, value ? std::optional<std::span<const std::uint8_t>>(values.back())
                                      : std::nullopt});
    }
    const std::lock_guard storageLock(storageMutex_);
    auto update = storage_.putAll(entries, changes.isWhole);
    if (changes.isWhole) {
        update.changes = std::move(changes);
    } else {
        auto& all = update.changes.entries;
        all.insert(all.end(), std::move_iterator(changes.entries.begin()),
                   std::move_iterator(changes.entries.end()));
    }
    const std::lock_guard lock(entriesMutex_);
    apply(std::move(update));
}

void DefaultsDomain::beginFork() {
    storageMutex_.lock();
    storage_.close();
    entriesMutex_.lock();
}

void DefaultsDomain::endFork(bool isChild) {
    if (isChild) {
        // A lock for reading and writing knows its writer by a number that the child does not have.
        std::construct_at(&entriesMutex_);
    } else {
        entriesMutex_.unlock();
    }
    storageMutex_.unlock();
}

}  // namespace orvalo
